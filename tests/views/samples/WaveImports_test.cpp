#include "views/samples/WaveImports.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QListView>

#include "views/samples/WaveDrop.h"
#include "views/window/FolderDrop.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;

/// A batch whose failures and steps are told.
struct Batch {
  TestStore store;
  QObject parent;
  WaveImports* imports = new WaveImports(store.library, &parent);
  std::vector<std::string> failures;

  Batch() {
    writeTree(store.files, "/home", {{"Kick.v2.wav", "one"}, {"snare.WAV", "two"}, {"caf\xE9.wav", "three"}});
    QObject::connect(imports, &WaveImports::failed,
                     [this](const QString& text) { failures.push_back(text.toStdString()); });
  }
  void start(const std::vector<Path>& files, std::int64_t tag = 0) {
    std::vector<SoundSource> sources;
    for (const Path& file : files)
      sources.push_back({file});
    imports->start(std::move(sources), tag);
  }
  /// Delivers events and runs the jobs until nothing is under way.
  void run() {
    do
      MainWindow::settle();
    while (store.jobs.runWork() || store.jobs.deliver());
  }
  const ImportBatch& progress() const { return store.library.imports(); }
  std::vector<std::string> imported() const {
    std::vector<std::string> names;
    for (const Wave& wave : store.library.waves())
      if (wave.isPending) names.push_back(wave.name() + "/" + std::to_string(wave.tag()));
    return names;
  }
};

TEST(WaveImports, OneFileAfterAnotherUnderItsNameAndTheBatchsTag) {
  Batch batch;
  batch.store.open();
  batch.start({"/home/Kick.v2.wav", "/home/gone.wav"}, 1);
  EXPECT_EQ(batch.store.jobs.waiting(), 0U) << "the caller would wait for the first file's checks";
  MainWindow::settle();
  EXPECT_EQ(batch.store.jobs.waiting(), 1U);
  batch.start({"/home/snare.WAV", "/home/lost.wav", "/home/caf\xE9.wav"});
  MainWindow::settle();
  EXPECT_EQ(batch.store.jobs.waiting(), 1U);
  EXPECT_TRUE(batch.progress().isRunning);
  EXPECT_EQ(batch.progress().done, 0);
  EXPECT_EQ(batch.progress().total(), 5);
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("Kick.v2/1", "snare/0", "caf\uFFFD/0"));
  ASSERT_EQ(batch.failures.size(), 1U) << "at the batch's end, and once";
  EXPECT_THAT(batch.failures[0], ::testing::StartsWith("2 files couldn't be imported: gone.wav, lost.wav. "));
  EXPECT_THAT(batch.failures[0], ::testing::HasSubstr("No such file"));
  EXPECT_FALSE(batch.progress().isRunning);
  EXPECT_EQ(batch.progress().done, 5);
  batch.start({"/home/gone.wav"});
  batch.run();
  EXPECT_THAT(batch.failures[1], ::testing::HasSubstr("No such file"));
  batch.start({"/home/snare.WAV"});
  EXPECT_EQ(batch.progress().done, 0);
  EXPECT_EQ(batch.progress().total(), 1);
}

TEST(WaveImports, ASampleAskedForByItselfGoesBetweenItsFilesAndIsNotCounted) {
  Batch batch;
  batch.store.open();
  batch.start({"/home/Kick.v2.wav", "/home/snare.WAV"});
  MainWindow::settle();
  batch.store.library.importWave("/home/caf\xE9.wav", "alone", 0, [](const std::exception_ptr&) {});
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("Kick.v2/0", "alone/0", "snare/0"));
  EXPECT_EQ(batch.progress().total(), 2);
}

TEST(WaveImports, FilesRefusedAtOnceLeaveTheWindowLive) {
  Batch batch;
  batch.start(std::vector<Path>(10'000, "/home/snare.WAV"));
  bool isLive = false;
  QMetaObject::invokeMethod(
      batch.imports, [&] { isLive = batch.progress().done < 3; }, Qt::QueuedConnection);
  while (batch.progress().isRunning)
    QApplication::processEvents();
  EXPECT_TRUE(isLive) << "all files are refused in one turn";
  ASSERT_EQ(batch.failures.size(), 1U);
  EXPECT_THAT(batch.failures[0], ::testing::HasSubstr("snare.WAV and 9980 more. "));
  EXPECT_THAT(batch.failures[0], ::testing::EndsWith("No SPD-SX folder has been loaded yet."));
}

TEST(WaveImports, AFolderGivesItsSoundsInTheOrderOfTheirNames) {
  Batch batch;
  batch.store.open();
  int nothing = 0;
  QObject::connect(batch.imports, &WaveImports::foundNothing, [&] { ++nothing; });
  writeTree(batch.store.files, "/home/Kit",
            {{"b/2.wav", ""}, {"b/deep/1.WAV", ""}, {"a.wav", ""}, {"c.wav", ""}, {"._c.wav", ""}, {"read.me", ""}});
  makeFolders(batch.store.files, "/home/Empty/below");
  batch.imports->start({{"/home/Kit", true}, {"/home/snare.WAV"}, {"/home/Empty", true}}, 0);
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("a/0", "2/0", "1/0", "c/0", "snare/0"));
  EXPECT_EQ(batch.progress().total(), 5);
  EXPECT_EQ(nothing, 0);
  batch.imports->start({{"/home/Empty", true}}, 0);
  batch.run();
  EXPECT_EQ(nothing, 1);
  EXPECT_FALSE(batch.progress().isRunning);
  batch.imports->start({{"/home/gone", true}}, 0);
  batch.run();
  EXPECT_EQ(batch.failures.size(), 1U);
}

/// What ends a batch before its time. The file under way follows the store's rules, the others aren't begun.
TEST(WaveImports, EndsWithItsCardAndItsWindow) {
  struct End {
    const char* what;
    std::function<void(Batch&)> happen;
    std::size_t imported;
  };
  const End ends[] = {
      {"another card is opened",
       [](Batch& batch) {
         batch.store.mountCard("fat:9999-0000", sampleCard());
         batch.store.library.load("/media/card");
       },
       0},
      {"the same card is read again", [](Batch& batch) { batch.store.library.load("/media/card"); }, 0},
      {"the last window closes",
       [](Batch&) {
         QWidget window;
         window.show();
         QMetaObject::invokeMethod(&window, &QWidget::close, Qt::QueuedConnection);
         QApplication::exec();
       },
       1},
  };
  for (const End& end : ends) {
    SCOPED_TRACE(end.what);
    Batch batch;
    batch.store.open();
    batch.start({"/home/Kick.v2.wav", "/home/snare.WAV", "/home/snare.WAV"});
    MainWindow::settle();
    end.happen(batch);
    batch.run();
    EXPECT_EQ(batch.imported().size(), end.imported);
    EXPECT_TRUE(batch.failures.empty());
    EXPECT_FALSE(batch.progress().isRunning);
    EXPECT_EQ(batch.progress().done, batch.progress().total());
    batch.start({"/home/snare.WAV"});
    batch.run();
    EXPECT_EQ(batch.imported().size(), end.imported + 1) << "what comes later is imported";
  }
}

constexpr const char* uriList = "text/uri-list";

std::unique_ptr<QMimeData> dragOf(const QByteArray& uris) {
  auto data = std::make_unique<QMimeData>();
  if (!uris.isEmpty()) data->setData(QString::fromLatin1(uriList), uris);
  data->setText(QString::fromUtf8(uris));
  return data;
}

TEST(WaveDrop, KeepsTheWavFilesAndFoldersOfThisComputer) {
  MemoryFileSystem files;
  makeFolders(files, "/a/folder.wav");
  makeFolders(files, "/a/card");
  const auto holdsCard = [](const Path& folder) { return folder.filename() == "card"; };
  const std::vector<std::pair<QByteArray, std::vector<SoundSource>>> cases{
      {"file:///a/kick.wav\r\nfile:///a/loud%20snare.WAV\r\n", {{"/a/kick.wav"}, {"/a/loud snare.WAV"}}},
      {"file:///a/kick.aiff\nfile:///a/tom.wAv\nfile:///a/wav", {{"/a/tom.wAv"}}},
      {"file:///a/caf%E9.wav", {{"/a/caf\xE9.wav"}}},
      {"file:///a/folder.wav\nfile:///a/card\nfile:///a/gone.wav", {{"/a/folder.wav", true}, {"/a/gone.wav"}}},
      {"https://a/kick.wav\r\nfile://elsewhere/a/kick.wav", {}},
      {"file:///a/.wav", {}},
      {"file:///a/kick.wav.aiff", {}},
      {"", {}},
  };
  for (const auto& [uris, sounds] : cases)
    EXPECT_EQ(droppedSounds(*dragOf(uris), files, holdsCard), sounds) << uris.toStdString();
}

/// A window that takes card folders, with a list that takes sounds and has a name open for editing. Folders below
/// /media hold cards.
struct DropWindow {
  TestStore store;
  QWidget window;
  QListView* list = new QListView(&window);
  QLineEdit* name = new QLineEdit(list);
  std::vector<std::vector<Path>> dropped;
  std::vector<Path> opened;
  std::vector<bool> targeted;

  DropWindow() {
    new FolderDrop(window, store.files, [this](const Path& folder) { opened.push_back(folder); });
    auto* drop = new WaveDrop(
        *list, store.files, [](const Path& folder) { return folder.parent_path() == "/media"; },
        [this](const std::vector<SoundSource>& sounds, const std::optional<Path>&) {
          dropped.emplace_back();
          for (const SoundSource& sound : sounds)
            dropped.back().push_back(sound.path);
        });
    QObject::connect(drop, &WaveDrop::targetedChanged, [this](bool on) { targeted.push_back(on); });
    makeFolders(store.files, "/media/card.wav");
    makeFolders(store.files, "/a/drums");
    window.resize(300, 300);
    list->resize(300, 200);
    window.show();
    MainWindow::settle();
  }
  /// Drags over the widget and lets go where that is accepted; the accepted action, or none.
  Qt::DropAction drop(QWidget& target, const QByteArray& uris, Qt::DropActions offered = Qt::CopyAction) {
    const auto data = dragOf(uris);
    QDragEnterEvent enter(QPoint(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) return Qt::IgnoreAction;
    QDropEvent let(QPointF(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &let);
    return let.isAccepted() ? let.dropAction() : Qt::IgnoreAction;
  }
};

TEST(WaveDrop, TakesSoundsOverTheWholeListAsACopy) {
  DropWindow drag;
  for (QWidget* target : {drag.list->viewport(), static_cast<QWidget*>(drag.list), static_cast<QWidget*>(drag.name)}) {
    EXPECT_EQ(drag.drop(*target, "file:///a/kick.wav\nfile:///a/kick.aiff", Qt::MoveAction | Qt::CopyAction),
              Qt::CopyAction);
    EXPECT_TRUE(drag.dropped.empty()) << "the source would wait for the imports";
    MainWindow::settle();
    EXPECT_THAT(drag.dropped, ElementsAre(ElementsAre("/a/kick.wav")));
    EXPECT_THAT(drag.targeted, ElementsAre(true, false));
    drag.dropped.clear();
    drag.targeted.clear();
  }
  EXPECT_EQ(drag.name->text(), QString());
}

TEST(WaveDrop, RefusesTheRestAndLeavesACardAloneToTheWindow) {
  DropWindow drag;
  QWidget& list = *drag.list->viewport();
  EXPECT_EQ(drag.drop(list, "file:///a/kick.aiff"), Qt::IgnoreAction);
  EXPECT_EQ(drag.drop(*drag.name, "file:///a/kick.aiff"), Qt::IgnoreAction);
  EXPECT_EQ(drag.drop(list, "file:///a/kick.wav", Qt::MoveAction), Qt::IgnoreAction) << "its source would delete it";
  EXPECT_EQ(drag.drop(list, ""), Qt::IgnoreAction);
  EXPECT_EQ(drag.drop(drag.window, "file:///a/kick.wav"), Qt::IgnoreAction) << "beside the list";
  EXPECT_TRUE(drag.targeted.empty());
  EXPECT_EQ(drag.drop(list, "file:///media/card.wav\nfile:///a/kick.aiff"), Qt::CopyAction);
  MainWindow::settle();
  EXPECT_TRUE(drag.dropped.empty());
  EXPECT_TRUE(drag.targeted.empty());
  EXPECT_THAT(drag.opened, ElementsAre("/media/card.wav"));
  for (const char* first : {"file:///media/card.wav", "file:///a/drums"}) {
    EXPECT_EQ(drag.drop(list, first + QByteArray("\nfile:///a/kick.wav")), Qt::CopyAction);
    MainWindow::settle();
    EXPECT_EQ(drag.dropped.back().back(), "/a/kick.wav");
  }
  EXPECT_EQ(drag.opened.size(), 1U) << "it would have taken the unsaved edits of the open card along";

  const auto data = dragOf("file:///a/kick.wav");
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&list, &enter);
  QDragLeaveEvent leave;
  drag.targeted.clear();
  QApplication::sendEvent(&list, &leave);
  EXPECT_THAT(drag.targeted, ElementsAre(false));

  QDialog sheet(&drag.window);
  sheet.setWindowModality(Qt::WindowModal);
  sheet.show();
  MainWindow::settle();
  EXPECT_EQ(drag.drop(list, "file:///a/kick.wav"), Qt::IgnoreAction) << "under a sheet";
}

}  // namespace
}  // namespace tamboro::test
