#include "views/samples/WaveImports.h"

#include <gtest/gtest.h>

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
    store.open();
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
  batch.start({"/home/Kick.v2.wav", "/home/snare.WAV"});
  settle();
  batch.store.library.importWave("/home/caf\xE9.wav", "alone", 0, [](const std::exception_ptr&) {});
  batch.run();
  EXPECT_THAT(batch.imported(), ElementsAre("Kick.v2/0", "alone/0", "snare/0"));
  EXPECT_EQ(batch.progress().total(), 2);
}

TEST(WaveImports, AFolderGivesItsSoundsInTheOrderOfTheirNames) {
  Batch batch;
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

}  // namespace
}  // namespace tamboro::test
