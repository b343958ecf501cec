#include "views/samples/WaveImports.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QListView>

#include "views/samples/WaveDrop.h"
#include "views/window/Drag.h"
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
      settle();
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
  batch.start({"/home/snare.WAV", "/home/lost.wav", "/home/caf\xE9.wav"});
  settle();
  EXPECT_EQ(batch.store.jobs.waiting(), 1U);
  EXPECT_EQ(batch.progress().total(), 5);
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("Kick.v2/1", "snare/0", "caf\uFFFD/0"));
  ASSERT_EQ(batch.failures.size(), 1U) << "at the batch's end, and once";
  EXPECT_THAT(batch.failures[0], ::testing::StartsWith("2 files couldn't be imported: gone.wav, lost.wav. "));
  EXPECT_FALSE(batch.progress().isRunning);
}

TEST(WaveImports, ASampleAskedForByItselfGoesBetweenItsFilesAndIsNotCounted) {
  Batch batch;
  batch.store.open();
  batch.start({"/home/Kick.v2.wav", "/home/snare.WAV"});
  settle();
  batch.store.library.importWave("/home/caf\xE9.wav", "alone", 0, [](const std::exception_ptr&) {});
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("Kick.v2/0", "alone/0", "snare/0"));
  EXPECT_EQ(batch.progress().total(), 2);
}

TEST(WaveImports, AFolderGivesItsSoundsInTheOrderOfTheirNames) {
  Batch batch;
  batch.store.open();
  int nothing = 0;
  QObject::connect(batch.imports, &WaveImports::foundNothing, [&] { ++nothing; });
  writeTree(batch.store.files, "/home/Kit", {{"b/2.wav", ""}, {"b/deep/1.WAV", ""}, {"a.wav", ""}, {"._c.wav", ""}});
  makeFolders(batch.store.files, "/home/Empty/below");
  batch.imports->start({{"/home/Kit", true}, {"/home/snare.WAV"}, {"/home/Empty", true}}, 0);
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("a/0", "2/0", "1/0", "snare/0"));
  EXPECT_EQ(nothing, 0);
  batch.imports->start({{"/home/Empty", true}}, 0);
  batch.run();
  EXPECT_EQ(nothing, 1);
}

/// What ends a batch before its time. The file under way follows the store's rules, the others aren't begun.
TEST(WaveImports, EndsWithItsCardAndItsWindow) {
  for (const bool isCard : {true, false}) {
    Batch batch;
    batch.store.open();
    batch.start({"/home/Kick.v2.wav", "/home/snare.WAV", "/home/snare.WAV"});
    settle();
    if (isCard) {
      batch.store.library.load("/media/card");
    } else {
      QWidget window;
      window.show();
      QMetaObject::invokeMethod(&window, &QWidget::close, Qt::QueuedConnection);
      QApplication::exec();
    }
    batch.run();
    EXPECT_EQ(batch.imported().size(), isCard ? 0U : 1U);
    EXPECT_TRUE(batch.failures.empty());
    EXPECT_FALSE(batch.progress().isRunning);
  }
}

TEST(WaveDrop, KeepsTheWavFilesAndFoldersOfThisComputer) {
  MemoryFileSystem files;
  makeFolders(files, "/a/folder.wav");
  makeFolders(files, "/a/card");
  const auto holdsCard = [](const Path& folder) { return folder.filename() == "card"; };
  const std::vector<std::pair<QByteArray, std::vector<SoundSource>>> cases{
      {"file:///a/kick.aiff\r\nfile:///a/loud%20snare.wAV\r\n", {{"/a/loud snare.wAV"}}},
      {"file:///a/folder.wav\nfile:///a/card\nfile:///a/gone.wav", {{"/a/folder.wav", true}, {"/a/gone.wav"}}},
      {"https://a/kick.wav\r\nfile:///a/.wav", {}},
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
  int opened = 0;
  std::vector<bool> targeted;

  DropWindow() {
    new FolderDrop(window, store.files, [this](const Path&) { ++opened; });
    auto* drop = new WaveDrop(
        *list, store.files, [](const Path& folder) { return folder.parent_path() == "/media"; },
        [this](const std::vector<SoundSource>& sounds, const std::optional<Path>&) {
          dropped.emplace_back();
          for (const SoundSource& sound : sounds)
            dropped.back().push_back(sound.path);
        });
    QObject::connect(drop, &WaveDrop::targetedChanged, [this](bool on) { targeted.push_back(on); });
    makeFolders(store.files, "/media/card.wav");
    window.resize(300, 300);
    list->resize(300, 200);
    window.show();
    settle();
  }
};

TEST(WaveDrop, TakesSoundsOverTheWholeListAsACopy) {
  DropWindow drag;
  for (QWidget* target : {drag.list->viewport(), static_cast<QWidget*>(drag.name)}) {
    EXPECT_EQ(dropUris(*target, "file:///a/kick.wav\nfile:///a/kick.aiff", Qt::MoveAction | Qt::CopyAction),
              Qt::CopyAction);
    EXPECT_TRUE(drag.dropped.empty()) << "the source would wait for the imports";
    settle();
    EXPECT_THAT(drag.dropped, ElementsAre(ElementsAre("/a/kick.wav")));
    EXPECT_THAT(drag.targeted, ElementsAre(true, false));
    drag.dropped.clear();
    drag.targeted.clear();
  }
  EXPECT_EQ(drag.name->text(), QString());
  QWidget& list = *drag.list->viewport();
  for (QWidget* target : {&list, static_cast<QWidget*>(drag.name)})
    EXPECT_EQ(dropUris(*target, "file:///a/kick.aiff"), Qt::IgnoreAction);
  EXPECT_EQ(dropUris(list, "file:///a/kick.wav", Qt::MoveAction), Qt::IgnoreAction) << "its source would delete it";
  EXPECT_EQ(dropUris(drag.window, "file:///a/kick.wav"), Qt::IgnoreAction) << "beside the list";
  EXPECT_TRUE(drag.targeted.empty());
  QDialog sheet(&drag.window);
  sheet.setModal(true);
  sheet.show();
  EXPECT_EQ(dropUris(list, "file:///a/kick.wav"), Qt::IgnoreAction) << "under a sheet";
}

TEST(WaveDrop, LeavesACardAloneToTheWindow) {
  DropWindow drag;
  QWidget& list = *drag.list->viewport();
  EXPECT_EQ(dropUris(list, "file:///media/card.wav\nfile:///a/kick.aiff"), Qt::CopyAction);
  settle();
  EXPECT_TRUE(drag.dropped.empty());
  EXPECT_EQ(drag.opened, 1);
  EXPECT_EQ(dropUris(list, "file:///media/card.wav\nfile:///a/kick.wav"), Qt::CopyAction);
  settle();
  EXPECT_THAT(drag.dropped, ElementsAre(ElementsAre("/a/kick.wav")));
  EXPECT_EQ(drag.opened, 1) << "it would have taken the unsaved edits of the open card along";
}

}  // namespace
}  // namespace tamboro::test
