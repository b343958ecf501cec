#include <gtest/gtest.h>

#include "views/window/FolderDrop.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// As file managers drag files: as addresses and as text.
std::unique_ptr<QMimeData> dragOf(const QByteArray& uris) {
  auto data = std::make_unique<QMimeData>();
  if (!uris.isEmpty()) data->setData(q("text/uri-list"), uris);
  data->setText(QString::fromUtf8(uris));
  return data;
}

/// Drags over the widget and lets go where that is accepted.
bool isTaken(QWidget& target, const QByteArray& uris, Qt::DropActions offered = Qt::CopyAction) {
  const auto data = dragOf(uris);
  QDragEnterEvent enter(QPoint(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent let(QPointF(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
  let.setDropAction(Qt::MoveAction);  // as with a key held
  QApplication::sendEvent(&target, &let);
  EXPECT_EQ(let.dropAction(), Qt::CopyAction) << "what is moved, its source deletes";
  return true;
}

TEST(FolderDrop, AFolderIsTakenWhenItIsTheFirstItemAndHere) {
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
      {"file:///media/%00", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [uris, folder] : cases)
    EXPECT_EQ(droppedFolder(*dragOf(uris), files), folder) << uris.toStdString();
}

/// The window with an edit that a load would drop, and a sample's name open for editing.
struct Drops : ::testing::Test, MainWindow {
  Drops() {
    showCard();
    library.setKitLevel(1, 12);
    makeFolders(store.files, "/a/card.wav/Roland/SPD-SX");
    writeTree(store.files, "/a", {{"kick.wav", ""}, {"loud snare.wAV", ""}, {"more.wav/in.wav", ""}, {"b.aiff", ""}});
    find<RowList>("waveList").setSelectedKeys({{0, 205}});
    QTest::keyClick(&find("waveList"), Qt::Key_F2);
    settle();
  }
  /// What came of a drop.
  std::string drop(QWidget& target, const QByteArray& uris, Qt::DropActions offered = Qt::CopyAction) {
    const std::size_t count = library.waves().size();
    if (!isTaken(target, uris, offered)) return "refused";
    EXPECT_TRUE(library.hasUnsavedChanges() && !library.imports().isRunning) << "the drag's source would wait";
    do
      settle();
    while (store.jobs.runWork() || store.jobs.deliver());
    return library.hasUnsavedChanges() ? std::to_string(library.waves().size() - count) + " sounds" : "opened";
  }
};

TEST_F(Drops, GoWhereTheyAreLetGo) {
  auto& list = *find<RowList>("waveList").viewport();
  auto& soundName = find<QLineEdit>("waveNameField");
  const struct {
    QWidget& target;
    QByteArray uris;
    std::string outcome;
    Qt::DropActions offered = Qt::CopyAction;
  } cases[] = {{list, "file:///a/kick.wav\nfile:///a/b.aiff", "1 sounds", Qt::MoveAction | Qt::CopyAction},
               {soundName, "file:///a/loud%20snare.wAV\nfile:///a/more.wav\nfile:///media/card", "2 sounds"},
               {list, "file:///media/card\nfile:///a/kick.wav", "1 sounds"},  // and the edits stay
               {list, "file:///a/kick.wav", "refused", Qt::MoveAction},
               {list, "file:///a/b.aiff\nfile:///a/.wav\nhttps://a/kick.wav", "refused"},
               {soundName, "file:///a/b.aiff", "refused"},
               {find("workspace"), "file:///a/kick.wav", "refused"},
               {list, "file:///media/card\nfile:///a/b.aiff", "opened"}};
  for (const auto& c : cases) {
    EXPECT_EQ(drop(c.target, c.uris, c.offered), c.outcome) << c.uris.constData();
    EXPECT_EQ(c.outcome == "opened" ? q("Kick") : soundName.text(), q("Kick"));
  }
}

TEST_F(Drops, ACardOpensOverAFieldAndNothingUnderASheet) {
  content.setShowingTagEditor(true);
  settle();
  EXPECT_EQ(drop(find("workspace"), "file:///media/card"), "refused");
  EXPECT_EQ(drop(*find<RowList>("waveList").viewport(), "file:///a/kick.wav"), "refused");
  content.setShowingTagEditor(false);
  settle();
  EXPECT_EQ(drop(find("kitName"), "file:///media/card"), "opened");
  EXPECT_EQ(find<QLineEdit>("kitName").text(), q("Rock")) << "a folder is for the window, not for the field under it";
}

TEST(Welcome, TakesACard) {
  MainWindow main;
  main.store.mountCard("fat:1234-ABCD", sampleCard());
  main.show();
  EXPECT_TRUE(isTaken(main.find("welcomeView"), "file:///media/card"));
  main.settle();
  EXPECT_TRUE(main.library.isLoaded());
}

}  // namespace
}  // namespace tamboro::test
