#include "views/window/FolderDrop.h"

#include <gtest/gtest.h>

#include <QLineEdit>

#include "views/window/Drag.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

TEST(FolderDrop, TakesTheFirstItemWhenItIsAFolderHere) {
  MemoryFileSystem files;
  makeFolders(files, "/media/my card");
  makeFolders(files, "/media/caf\xE9");
  writeFile(files, "/media/kick.wav", "audio");
  const std::vector<std::pair<QByteArray, std::optional<Path>>> cases{
      {"FILE://localhost/media/my%20card", "/media/my card"},
      {"# dragged\r\nfile:///media/my%20card\r\nfile:///media/kick.wav\r\n", "/media/my card"},
      {"file:///media/caf%E9\r\n", "/media/caf\xE9"},  // a name that isn't UTF-8
      {"file:///media/kick.wav\r\nfile:///media/my%20card\r\n", std::nullopt},
      {"file:///media/gone", std::nullopt},
      {"file://elsewhere/media/my%20card", std::nullopt},
      {"https://media/my%20card", std::nullopt},
      {"file:///media/%00", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [uris, folder] : cases)
    EXPECT_EQ(droppedFolder(*dragOf(uris), files), folder) << uris.toStdString();
}

TEST(FolderDrop, OpensACardFromWelcomeAndOverAnother) {
  MainWindow main;
  main.store.mountCard("fat:1234-ABCD", sampleCard());
  main.show();
  EXPECT_NE(dropUris(main.find("welcomeView"), "file:///media/card"), Qt::IgnoreAction);
  EXPECT_FALSE(main.library.isLoaded()) << "the source of the drag would wait for the load";
  main.select(1);
  EXPECT_TRUE(main.library.isLoaded());
  main.library.setKitLevel(1, 12);
  main.content.setShowingTagEditor(true);
  main.settle();
  EXPECT_EQ(dropUris(main.find("workspace"), "file:///media/card"), Qt::IgnoreAction) << "under a sheet";
  main.content.setShowingTagEditor(false);
  main.settle();
  auto& field = main.find<QLineEdit>("kitName");
  EXPECT_NE(dropUris(field, "file:///media/card"), Qt::IgnoreAction);
  main.settle();
  EXPECT_EQ(field.text(), q("Rock")) << "a folder is for the window, not for the field under it";
  EXPECT_FALSE(main.library.hasUnsavedChanges()) << "the open card is replaced without a question";
}

}  // namespace
}  // namespace tamboro::test
