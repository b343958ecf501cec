#include <gmock/gmock.h>

#include <functional>

#include "library/FailureSweep.h"
#include "support/TestStore.h"

namespace tamboro::test {
namespace {

using ::testing::HasSubstr;

const Path destination = "/home/kit";

/// A store whose kit 2 has a sample that is staged and one that is on the card, and the folder that its export makes.
struct Export : ::testing::Test {
  void TestBody() override {}  // a sweep makes one for each of its attempts
  Export() {
    store.open();
    writeFile(store.files, "/home/kick.wav", "staged");
    EXPECT_EQ(store.import("/home/kick.wav", "New"), "");
    store.library.setPadSound(2, 0, 200);
    store.library.updatePad(2, 1, [](Pad& pad) { pad.node.setLeaf("SubWv", 207); });
    std::string& kit = expected["kit002.spd"] = sampleCard().at("KIT/kit002.spd");
    kit = replaced(kit, "<Wv>206<", "<Wv>200<");  // pad 3 points nowhere
    kit = replaced(kit, "<NoteNum>62</NoteNum>", "<NoteNum>62</NoteNum>\n\t\t<SubWv>207</SubWv>");
    for (const char* file : {"WAVE/PRM/02/07.spd", "WAVE/DATA/02/tom low.wav"})
      expected[file] = sampleCard().at(file);
    expected["WAVE/DATA/02/kick_01.wav"] = "staged";
  }
  std::string exported(const Path& folder = destination) {
    return store.ended([&](auto done) { store.library.exportKit(2, folder, done); });
  }
  Tree result() {
    Tree files = readTree(store.files, destination);
    EXPECT_THAT(files["WAVE/PRM/02/00.spd"], HasSubstr("<Path>02/kick_01.wav</Path>"));
    files.erase("WAVE/PRM/02/00.spd");
    return files;
  }

  TestStore store;
  Tree expected;
};

TEST_F(Export, HoldsTheKitAsItStandsAndLeavesTheStoreAndTheCardAlone) {
  writeTree(store.files, destination, {{"kit002.spd", "old"}, {"WAVE/DATA/02/tom low.wav", "old"}, {"notes", "mine"}});
  expected["notes"] = "mine";
  const std::vector<Kit> kits = store.library.kits();
  for (int i = 0; i < 2; ++i)
    ASSERT_EQ(exported(), "");
  EXPECT_EQ(difference(expected, result()), "");
  EXPECT_EQ(store.library.kits(), kits);
  EXPECT_EQ(difference(sampleCard(), store.card()), "");
}

TEST_F(Export, KeepsItsStagedAudioThroughADeletionAndAReusedName) {
  std::string text = "it has not ended";
  store.library.exportKit(2, destination, [&](const std::exception_ptr& error) { text = textOf(error); });
  store.library.deleteWave(200);
  writeFile(store.files, "/again/kick.wav", "new");
  ASSERT_EQ(store.import("/again/kick.wav", "Newer"), "");
  EXPECT_EQ(text, "");
  EXPECT_EQ(difference(expected, result()), "");
}

TEST_F(Export, RefusesDestinationsOnWhichItWouldWriteTheCard) {
  makeFolders(store.files, "/half");
  store.files.addLink("/half/WAVE", TestStore::root / "WAVE");
  store.files.addLink("/to card", TestStore::root);
  store.files.addLink("/to KIT", TestStore::root / "KIT");
  for (const Path& place : {TestStore::root, TestStore::root / "", Path("/to card"), TestStore::root / "KIT",
                            TestStore::root / "kit", Path("/to KIT"), Path("/half")}) {
    EXPECT_THAT(exported(place), HasSubstr("isn't allowed")) << place;
    EXPECT_EQ(difference(sampleCard(), store.card()), "");
  }
  EXPECT_EQ(exported(TestStore::root / "exports/kit"), "");
}

TEST_F(Export, StopsAtWhatItCannotCopyOrReplace) {
  const Path staged = TestStore::staging / "02/kick_01.wav";
  const Path tom = TestStore::root / "WAVE/DATA/02/tom low.wav";
  const Path target = destination / "kit002.spd";
  const struct {
    const char* text;
    std::function<void(MemoryFileSystem&)> change;
  } cases[] = {{"No such file", [&](auto& f) { f.removeFile(tom); }},
               {"No such file", [&](auto& f) { f.removeFile(staged); }},
               {"Is a directory", [&](auto& f) { f.removeFile(staged), f.makeFolder(staged); }},
               {"not supported", [&](auto& f) { f.removeFile(staged), f.addSpecial(staged); }},
               {"Is a directory", [&](auto& f) { makeFolders(f, target); }},
               {"File exists", [&](auto& f) { makeFolders(f, destination), f.addLink(target, staged); }},
               {"Another card", [](auto& f) { f.setVolume("/media/card", {.serial = "OTHER"}); }}};
  for (const auto& [text, change] : cases) {
    Export fixture;
    change(fixture.store.files);
    EXPECT_THAT(fixture.exported(), HasSubstr(text));
  }
}

TEST(ExportSweep, LeavesEveryFileWholeWhateverFails) {
  sweepFailures([](const auto& fail, bool isPulled) {
    Export fixture;
    MemoryFileSystem& files = fixture.store.files;
    writeTree(files, destination, {{"kit002.spd", "old"}});
    fail(files);
    const std::string text = fixture.exported();
    const std::uint64_t count = files.count();
    files.failNothing();
    const Tree left = readTree(files, destination);
    EXPECT_EQ(fixture.exported(), "");
    Tree expected = readTree(files, destination);
    EXPECT_TRUE(isPulled || difference(fixture.expected, fixture.result()).empty());
    EXPECT_TRUE(!text.empty() || left == expected);
    for (const auto& [name, bytes] : left) {
      const bool isTemporary = name.find(temporaryName) != std::string::npos;
      EXPECT_TRUE(isTemporary ? isPulled : bytes == "old" || expected[name] == bytes) << name;
    }
    EXPECT_EQ(difference(sampleCard(), fixture.store.card()), "");
    return count;
  });
}

TEST_F(Export, SyncsEachFileAndItsName) {
  store.files.clearOperations();
  ASSERT_EQ(exported(), "");
  const std::vector<std::string> steps = store.files.operations();
  std::size_t renames = 0;
  for (std::size_t i = 2; i + 2 < steps.size(); ++i) {
    if (!steps[i].starts_with("rename ")) continue;
    ++renames;
    const std::string from = steps[i].substr(7, steps[i].find(".tmp") - 3);
    EXPECT_EQ(steps[i - 2], "sync " + from);
    EXPECT_EQ(steps[i + 2], "sync " + Path(from).parent_path().string());
  }
  EXPECT_EQ(renames, expected.size() + 1);
}

}  // namespace
}  // namespace tamboro::test
