#include "views/window/FolderDrop.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QDragEnterEvent>
#include <QLineEdit>

#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

constexpr const char* uriList = "text/uri-list";

QMimeData* dragOf(const QByteArray& uris) {
  auto* data = new QMimeData;
  data->setData(QString::fromLatin1(uriList), uris);
  data->setText(QString::fromUtf8(uris));  // file managers send both
  return data;
}

/// Drags onto a widget and lets go; true if the drag was accepted.
bool drop(QWidget& target, const QByteArray& uris) {
  const std::unique_ptr<QMimeData> data(dragOf(uris));
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent let(QPointF(5, 5), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &let);
  return let.isAccepted();
}

TEST(FolderDrop, TakesTheFirstItemWhenItIsAFolderHere) {
  MemoryFileSystem files;
  makeFolders(files, "/media/my card");
  makeFolders(files, "/media/caf\xE9");
  writeFile(files, "/media/kick.wav", "audio");
  const std::vector<std::pair<QByteArray, std::optional<Path>>> cases{
      {"file:///media/my%20card\r\n", "/media/my card"},
      {"FILE://localhost/media/my%20card", "/media/my card"},
      {"# dragged\r\nfile:///media/my%20card\r\nfile:///media/kick.wav\r\n", "/media/my card"},
      {"file:///media/caf%E9\r\n", "/media/caf\xE9"},  // a name that isn't UTF-8
      {"file:///media/kick.wav\r\nfile:///media/my%20card\r\n", std::nullopt},
      {"file:///media/gone", std::nullopt},
      {"file://elsewhere/media/my%20card", std::nullopt},
      {"https://media/my%20card", std::nullopt},
      {"file://", std::nullopt},
      {"file:///media/%00", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [uris, folder] : cases) {
    const std::unique_ptr<QMimeData> data(dragOf(uris));
    EXPECT_EQ(droppedFolder(*data, files), folder) << uris.toStdString();
  }
  EXPECT_EQ(droppedFolder(QMimeData(), files), std::nullopt);
}

TEST(FolderDrop, OpensACardFromWelcomeAndOverAnother) {
  MainWindow main;
  main.store.mountCard("fat:1234-ABCD", sampleCard());
  main.show();
  EXPECT_TRUE(drop(main.find("welcomeView"), "file:///media/card"));
  EXPECT_FALSE(main.store.library.isLoaded()) << "the source of the drag would wait for the load";
  main.settle();
  EXPECT_TRUE(main.store.library.isLoaded());

  main.store.library.setKitLevel(1, 12);
  EXPECT_TRUE(drop(main.find("statusLine"), "file:///media/card"));
  main.settle();
  EXPECT_FALSE(main.store.library.hasUnsavedChanges()) << "the open card is replaced without a question";

  auto* field = new QLineEdit(&main.find("workspace"));
  field->show();
  EXPECT_TRUE(drop(*field, "file:///home"));
  main.settle();
  EXPECT_EQ(field->text(), QString()) << "a folder is for the window, not for the field under it";
}

TEST(FolderDrop, LeavesOtherDragsAloneAndRestsUnderASheet) {
  MainWindow main;
  main.showCard();
  writeFile(main.store.files, "/media/kick.wav", "audio");
  EXPECT_FALSE(drop(main.find("workspace"), "file:///media/kick.wav"));
  main.content.setShowingTagEditor(true);
  main.settle();
  main.store.library.setKitLevel(1, 12);
  EXPECT_FALSE(drop(main.find("workspace"), "file:///media/card"));
  main.settle();
  EXPECT_TRUE(main.store.library.hasUnsavedChanges());
}

}  // namespace
}  // namespace tamboro::test
