#include "library/saving/CardWriter.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "library/saving/SaveBatches.h"
#include "library/saving/SaveFixture.h"

namespace tamboro::test {
namespace {

using namespace std::string_literals;
using Operations = std::vector<std::string>;

std::errc errorOf(FileSystem& card, const FileSystem& files, const SavePlan& plan) {
  try {
    writeToCard(card, files, plan);
  } catch (const FileError& error) {
    return static_cast<std::errc>(error.code().default_error_condition().value());
  }
  return {};
}

/// The steps of a plan carried out on the fixture's card.
Operations record(SaveFixture& fixture, const SavePlan& plan) {
  const std::unique_ptr<FileSystem> card = fixture.files.rooted("/card");
  fixture.files.clearOperations();
  writeToCard(*card, fixture.files, plan);
  return fixture.files.operations();
}

SavePlan wholePlan(const SaveFixture& fixture) {
  ExportResult result;
  return makeSavePlan(fixture.snapshot, *fixture.files.rooted("/card"), result);
}

/// Fails unless the operations stand in the record in this order, others between them.
void expectInOrder(const Operations& record, const Operations& expected) {
  auto from = record.begin();
  for (const std::string& operation : expected) {
    from = std::find(from, record.end(), operation);
    ASSERT_NE(from, record.end()) << operation << " is not behind what stands before it in "
                                  << ::testing::PrintToString(expected);
    ++from;
  }
}

struct Move {
  std::string from;
  Path to;
};

std::vector<Move> moves(const Operations& record) {
  std::vector<Move> found;
  for (const std::string& operation : record) {
    if (!operation.starts_with("rename ")) continue;
    const std::size_t gap = operation.find(' ', 7);
    found.push_back({operation.substr(7, gap - 7), operation.substr(gap + 1)});
  }
  return found;
}

TEST(CardWriter, FollowsTheProtocol) {
  SaveFixture fixture;
  const SavePlan plan = wholePlan(fixture);
  const Operations steps = record(fixture, plan);
  const std::string temporary = ".tamboro-1";
  expectInOrder(steps, {"open WAVE/PRM/02/00.spd", "removeFile WAVE/PRM/02/00.spd", "sync WAVE/PRM/02",
                        "removeFile WAVE/DATA/02/snare.wav", "sync WAVE/DATA/02", "removeFile KIT/kit007.spd",
                        "sync KIT", "close WAVE/PRM/02/00.spd", "makeFolder " + temporary,
                        "makeFolder " + temporary + "/0", "create " + temporary + "/2", "write " + temporary + "/2",
                        "volume .", "sync .", "removeFolder " + temporary, "sync .", "close " + temporary});
  const std::vector<Move> moved = moves(steps);
  std::size_t files = 0;
  for (const auto& [from, to] : moved) {
    const std::string name = to.string();
    const std::string rename = "rename " + from + " " + name;
    SCOPED_TRACE(rename);
    const std::string make = (to.has_extension() ? "create " : "makeFolder ") + from;
    expectInOrder(steps, {make, "volume .", "sync .", rename, "volume .", "sync .", "removeFolder " + temporary});
    if (!to.has_extension()) continue;
    const PlannedFile& planned = plan.files.at(files++);
    EXPECT_EQ(planned.path, to);
    if (files > 1 && planned.group != plan.files.at(files - 2).group) {
      const Move& before = moved.at(moved.size() - plan.files.size() + files - 2);
      expectInOrder(steps, {"rename " + before.from + " " + before.to.string(), "volume .", "sync .", rename});
    }
    expectInOrder(steps, {"create " + from, "write " + from, "volume .", rename, "sync .", "close " + from});
    EXPECT_EQ(std::ranges::count(steps, "close " + from), 1);
    if (fixture.before.contains(name) && fixture.after.contains(name) && name != "WAVE/PRM/02/02.spd") {
      expectInOrder(steps, {"open " + name, rename, "sync .", "close " + from, "close " + name});
    }
  }
  EXPECT_EQ(files, plan.files.size());
}

TEST(CardWriter, MakesNestedFoldersFromTheTop) {
  SaveFixture fixture;
  const Operations steps = record(fixture, {{}, {"A", "A/B", "A/B/C"}, {{"A/B/C/f", "f"s}}});
  expectInOrder(steps, {"rename .tamboro-1/0 A", "rename .tamboro-1/1 A/B", "rename .tamboro-1/2 A/B/C",
                        "rename .tamboro-1/3 A/B/C/f"});
  EXPECT_EQ(fixture.card().at("A/B/C/f"), "f");
}

// A folder that grew while names come into it would show what its new cluster held before.
TEST(CardWriter, MakesFoldersLargeEnoughBeforeNamesCome) {
  const std::string placeholder = ".tamboro-" + std::string(Placeholders::nameSize - 9, '-');
  const auto numbered = [&](int i) { return std::string(placeholder).replace(9, 1, std::to_string(i)); };
  SaveFixture fixture;
  writeTree(fixture.files, "/card", {{"KIT/" + numbered(1), "left"}});
  SavePlan plan{{}, {"N"}, {{"N/f", "f"s}, {"SYSTEM/tag_list.spd", "rewritten"s}}};
  std::size_t entries = 0;
  for (int i = 100; i < 130; ++i) {
    plan.files.push_back({"KIT/kit" + std::to_string(i) + ".spd", "new"s});
    entries += 2;
  }
  const Operations steps = record(fixture, plan);
  const std::string first = "KIT/" + numbered(2);
  const std::string last = "KIT/" + numbered(static_cast<int>((entries + 10) / 11) + 1);
  expectInOrder(steps, {"volume .", "sync .", "create " + first, "sync KIT", "create " + last, "sync KIT",
                        "removeFile " + first, "removeFile " + last, "create .tamboro-1/1"});
  const std::string hidden = ".tamboro-1/0/" + numbered(1);
  expectInOrder(steps, {"create " + hidden, "removeFile " + hidden, "volume .", "sync .", "rename .tamboro-1/0 N"});
  EXPECT_EQ(std::ranges::count(steps, "create SYSTEM/" + numbered(1)), 0);
  EXPECT_EQ(fixture.card().size(), fixture.before.size() + 32);
  EXPECT_EQ(fixture.card().at("KIT/" + numbered(1)), "left");
}

TEST(CardWriter, HoldsFewFilesOpenHoweverLargeThePlan) {
  SaveFixture fixture;
  SavePlan plan;
  for (int i = 0; i < 700; ++i) {
    const std::string name = "KIT/" + std::to_string(i);
    writeFile(fixture.files, "/card" / Path(name), "old");
    if (i < 450) plan.files.push_back({name, "new " + name});
    if (i >= 450) plan.removals.push_back({name, 1});
    plan.folders.push_back("F" + std::to_string(i));
  }
  int open = 0;
  int most = 0;
  for (const std::string& step : record(fixture, plan)) {
    open += step.starts_with("open ") || step.starts_with("create ") ? 1 : step.starts_with("close ") ? -1 : 0;
    most = std::max(most, open);
  }
  EXPECT_EQ(open, 0);
  EXPECT_LT(most, 520);
  const Tree card = fixture.card();
  for (int i = 0; i < 450; ++i)
    EXPECT_EQ(card.at("KIT/" + std::to_string(i)), "new KIT/" + std::to_string(i));
  EXPECT_FALSE(card.contains("KIT/450"));
  EXPECT_EQ(fixture.files.status("/card/F699").kind, FileKind::folder);
}

TEST(CardWriter, LeavesWhatAnEarlierCutLeft) {
  SaveFixture fixture;
  writeTree(fixture.files, "/card", {{".tamboro-1/0", "left"}, {".tamboro-2", "left"}});
  writeToCard(*fixture.files.rooted("/card"), fixture.files, wholePlan(fixture));
  fixture.after.insert({{".tamboro-1/0", "left"}, {".tamboro-2", "left"}});
  EXPECT_THAT(fixture.card(), IsTree(fixture.after));
}

TEST(CardWriter, LetsTheLaterOfTwoFilesWin) {
  SaveFixture fixture;
  SavePlan plan;
  for (int i = 0; i < 202; ++i)
    plan.files.push_back({"KIT/kit001.spd", std::to_string(i)});
  writeToCard(*fixture.files.rooted("/card"), fixture.files, plan);
  EXPECT_EQ(fixture.card().at("KIT/kit001.spd"), "201");
}

// Each is refused before the first change, the removal included.
TEST(CardWriter, RefusesWhatCannotBeWritten) {
  using enum std::errc;
  const struct {
    PlannedFile file;
    Path folder;
    std::errc error;
  } cases[] = {{{"WAVE/PRM", "x"s}, "WAVE", is_a_directory},
               {{"KIT/link", "x"s}, "WAVE", file_exists},
               {{"KIT/pipe", "x"s}, "WAVE", file_exists},
               {{"KIT/f", Path("/staging/gone.wav")}, "WAVE", no_such_file_or_directory},
               {{"KIT/f", Path("/staging")}, "WAVE", is_a_directory},
               {{"KIT/f", Path("/card/KIT/pipe")}, "WAVE", operation_not_supported},
               {{"KIT/f", "x"s}, "KIT/readme.txt", not_a_directory}};
  for (const auto& [file, folder, error] : cases) {
    SCOPED_TRACE(file.path);
    SaveFixture fixture;
    fixture.files.addLink("/card/KIT/link", "/card/KIT/readme.txt");
    fixture.files.addSpecial("/card/KIT/pipe");
    const std::unique_ptr<FileSystem> card = fixture.files.rooted("/card");
    EXPECT_EQ(errorOf(*card, fixture.files, {{{"KIT/kit001.spd", 1}}, {folder}, {{"KIT/new", "x"s}, file}}), error);
    EXPECT_THAT(fixture.card(), IsTree(fixture.before));
  }
}

TEST(CardWriter, RemovesOnlyFiles) {
  SaveFixture fixture;
  makeFolders(fixture.files, "/card/KIT/folder");
  fixture.files.addLink("/card/KIT/link", "/card/KIT/readme.txt");
  const FailedRemovals failed =
      writeToCard(*fixture.files.rooted("/card"), fixture.files,
                  {{{"KIT/gone", 1}, {"KIT/folder", 2}, {"KIT/link", 3}, {"KIT/kit001.spd", 4}}, {}, {}});
  EXPECT_TRUE(failed.deletions.empty());
  EXPECT_EQ(fixture.files.entryStatus("/card/KIT/folder").kind, FileKind::folder);
  EXPECT_EQ(fixture.files.entryStatus("/card/KIT/link").kind, FileKind::other);
  EXPECT_FALSE(fixture.card().contains("KIT/kit001.spd"));
}

// Clusters of 16 KB: the temporary folder takes one.
TEST(CardWriter, AsksForRoomBeforeTheFirstChange) {
  const std::string large(40000, 'x');  // three clusters
  const std::string old(20000, 'o');    // two clusters
  const PlannedFile rewritten = {"KIT/a", large};
  const PlannedFile added = {"KIT/new", "x"s};  // a cluster for itself and one for its name
  const struct {
    const char* what;
    SavePlan plan;
    std::uint64_t enough;
  } cases[] = {{"the new beside the old", {{}, {}, {rewritten}}, 4},
               {"a new name in its folder", {{}, {}, {added}}, 3},
               {"two new names share a cluster", {{}, {}, {added, {"KIT/new 2", ""s}}}, 3},
               {"a folder", {{}, {"F"}, {}}, 3},
               {"what a removal frees", {{{"KIT/b", 1}}, {}, {rewritten}}, 2},
               {"named twice it frees once", {{{"KIT/b", 1}, {"KIT/b", 2}}, {}, {rewritten}}, 2},
               {"what an earlier batch frees", {{}, {}, {{"KIT/a", "x"s}, {"KIT/b", "x"s}}}, 2},
               {"no more than it frees", {{}, {}, {{"KIT/a", large}, {"KIT/b", large}}}, 5},
               {"copied files", {{}, {}, {{"KIT/a", Path("/staging/hat.wav")}}}, 2}};
  for (const auto& [what, plan, enough] : cases) {
    for (const bool fits : {false, true}) {
      SCOPED_TRACE(std::string(what) + (fits ? " fits" : " is too much"));
      SaveFixture fixture;
      writeTree(fixture.files, "/card/KIT", {{"a", old}, {"b", old}});
      const Tree before = fixture.card();
      const std::uint64_t clusters = fits ? enough : enough - 1;
      fixture.files.setVolume("/card", {{}, {clusters * 16384 + 16383, 16384}, false});
      const std::unique_ptr<FileSystem> card = fixture.files.rooted("/card");
      EXPECT_EQ(errorOf(*card, fixture.files, plan), fits ? std::errc() : std::errc::no_space_on_device);
      EXPECT_TRUE(fits || fixture.card() == before);
    }
  }
}

TEST(CardWriter, FailsAtOnceOnAReadOnlyCard) {
  SaveFixture fixture;
  MemoryVolume volume;
  volume.readOnly = true;
  fixture.files.setVolume("/card", volume);
  const std::unique_ptr<FileSystem> card = fixture.files.rooted("/card");
  EXPECT_EQ(errorOf(*card, fixture.files, wholePlan(fixture)), std::errc::read_only_file_system);
  EXPECT_THAT(fixture.card(), IsTree(fixture.before));
}

}  // namespace
}  // namespace tamboro::test
