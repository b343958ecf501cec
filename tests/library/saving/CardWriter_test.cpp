#include "library/saving/CardWriter.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "library/saving/SaveBatches.h"
#include "support/MemoryFileSystem.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

using namespace std::string_literals;
using Operations = std::vector<std::string>;

struct CardWriter : ::testing::Test {
  CardWriter() {
    files.mount("/card", {.serial = "CARD"});
    writeTree(files, "/card", before);
    writeFile(files, "/staging/hat.wav", "hat");
    card = files.rooted("/card");
    files.clearOperations();
  }
  std::errc errorOf(const SavePlan& plan) {
    try {
      failed = writeToCard(*card, files, plan);
    } catch (const FileError& error) {
      return static_cast<std::errc>(error.code().default_error_condition().value());
    }
    return {};
  }
  /// The steps of a plan, carried out. What waits for the device is brought there in two: "volume ." and "sync .".
  Operations steps(const SavePlan& plan) {
    EXPECT_EQ(errorOf(plan), std::errc());
    return files.operations();
  }
  Tree tree() const { return readTree(files, "/card"); }

  const Tree before = {
      {"KIT/kit001.spd", "kit 1"}, {"KIT/kit007.spd", "kit 7"}, {"SYSTEM/list.spd", "old"}, {"SYSTEM/x", "x"}};
  MemoryFileSystem files;
  std::unique_ptr<FileSystem> card;
  FailedRemovals failed;
};

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

TEST_F(CardWriter, FollowsTheProtocol) {
  const Operations record = steps({{{"KIT/kit007.spd", 1}, {"SYSTEM/x", 1}},
                                   {"A", "A/B"},
                                   {{"A/B/hat.wav", Path("/staging/hat.wav"), FileGroup::audio},
                                    {"KIT/kit001.spd", "new kit"s, FileGroup::kits},
                                    {"KIT/kit002.spd", "kit 2"s, FileGroup::kits},
                                    {"SYSTEM/list.spd", "new"s, FileGroup::lists}}});
  const std::string t = ".tamboro-1";
  const Operations moves = {"rename " + t + "/0 A",
                            "rename " + t + "/1 A/B",
                            "rename " + t + "/2 A/B/hat.wav",
                            "volume .",
                            "sync .",
                            "rename " + t + "/3 KIT/kit001.spd",
                            "rename " + t + "/4 KIT/kit002.spd",
                            "volume .",
                            "sync .",
                            "rename " + t + "/5 SYSTEM/list.spd",
                            "volume .",
                            "sync .",
                            "removeFolder " + t,
                            "sync .",
                            "close " + t};
  expectInOrder(record, moves);
  // A file that loses its name is held until the device knows.
  expectInOrder(record, {"open KIT/kit007.spd", "removeFile KIT/kit007.spd", "sync KIT", "removeFile SYSTEM/x",
                         "sync SYSTEM", "close KIT/kit007.spd", "makeFolder " + t, "open " + t});
  for (const auto& [number, name] : {std::pair{"/3", "KIT/kit001.spd"}, {"/5", "SYSTEM/list.spd"}}) {
    expectInOrder(record, {"open "s + name, "rename " + t + number + " " + name, "volume .", "sync .",
                           "close " + t + number, "close "s + name});
  }
  // No name leads to content that isn't on the device.
  for (const char* number : {"/2", "/3", "/4", "/5"}) {
    expectInOrder(record, {"makeFolder " + t + "/1", "create " + t + number, "write " + t + number, "volume .",
                           "sync .", moves.front(), moves.back()});
  }
  EXPECT_THAT(tree(), IsTree(Tree{{"A/B/hat.wav", "hat"},
                                  {"KIT/kit001.spd", "new kit"},
                                  {"KIT/kit002.spd", "kit 2"},
                                  {"SYSTEM/list.spd", "new"}}));
}

// A folder that grew while names come into it would show what its new cluster held before.
TEST_F(CardWriter, MakesFoldersLargeEnoughBeforeNamesComeAndLeavesWhatAnEarlierCutLeft) {
  const auto placeholder = [](int number) {
    std::string name = ".tamboro-" + std::to_string(number);
    return name + std::string(Placeholders::nameSize - name.size(), '-');
  };
  const Tree left = {{"KIT/" + placeholder(1), "left"}, {".tamboro-1/0", "left"}, {".tamboro-2", "left"}};
  writeTree(files, "/card", left);
  files.clearOperations();
  SavePlan plan{{}, {"N"}, {{"N/f", "f"s}, {"SYSTEM/list.spd", "rewritten"s}}};
  for (int i = 100; i < 130; ++i)
    plan.files.push_back({"KIT/kit" + std::to_string(i) + ".spd", "new"s});
  const Operations record = steps(plan);
  const std::string first = "KIT/" + placeholder(2);
  const std::string last = "KIT/" + placeholder(7);  // room for 60 entries, 11 each
  const std::string hidden = ".tamboro-3/0/" + placeholder(1);
  expectInOrder(record, {"volume .", "sync .", "create " + first, "sync KIT", "create " + last, "sync KIT",
                         "removeFile " + first, "removeFile " + last, "create " + hidden, "removeFile " + hidden,
                         "create .tamboro-3/1", "volume .", "sync .", "rename .tamboro-3/0 N"});
  EXPECT_EQ(std::ranges::count(record, "create SYSTEM/" + placeholder(1)), 0);
  EXPECT_EQ(tree().size(), before.size() + 31 + left.size());
  for (const auto& [name, bytes] : left)
    EXPECT_EQ(tree()[name], bytes) << name;
}

TEST_F(CardWriter, HoldsFewFilesOpenHoweverLargeThePlan) {
  SavePlan plan;
  for (int i = 0; i < 700; ++i) {
    const std::string name = "KIT/" + std::to_string(i);
    writeFile(files, "/card" / Path(name), "old");
    if (i < 450) plan.files.push_back({name, "new " + name});
    if (i >= 450) plan.removals.push_back({name, 1});
    plan.folders.push_back("F" + std::to_string(i));
  }
  files.clearOperations();
  int open = 0;
  int most = 0;
  for (const std::string& step : steps(plan)) {
    open += step.starts_with("open ") || step.starts_with("create ") ? 1 : step.starts_with("close ") ? -1 : 0;
    most = std::max(most, open);
  }
  EXPECT_EQ(open, 0);
  EXPECT_LT(most, 520);
  const Tree after = tree();
  EXPECT_EQ(after.size(), before.size() + 450);
  for (int i = 0; i < 450; ++i)
    EXPECT_EQ(after.at("KIT/" + std::to_string(i)), "new KIT/" + std::to_string(i));
  EXPECT_EQ(files.status("/card/F699").kind, FileKind::folder);
}

// Each is refused before the first change, the removal included.
TEST_F(CardWriter, RefusesWhatCannotBeWritten) {
  using enum std::errc;
  files.addLink("/card/KIT/link", "/card/KIT/kit001.spd");
  files.addSpecial("/card/KIT/pipe");
  const struct {
    PlannedFile file;
    Path folder;
    std::errc error;
  } cases[] = {{{"KIT", "x"s}, "WAVE", is_a_directory},
               {{"KIT/link", "x"s}, "WAVE", file_exists},
               {{"KIT/pipe", "x"s}, "WAVE", file_exists},
               {{"KIT/f", Path("/staging/gone.wav")}, "WAVE", no_such_file_or_directory},
               {{"KIT/f", Path("/staging")}, "WAVE", is_a_directory},
               {{"KIT/f", Path("/card/KIT/pipe")}, "WAVE", operation_not_supported},
               {{"KIT/f", "x"s}, "SYSTEM/list.spd", not_a_directory}};
  for (const auto& [file, folder, error] : cases) {
    EXPECT_EQ(errorOf({{{"KIT/kit001.spd", 1}}, {folder}, {{"KIT/new", "x"s}, file}}), error) << file.path;
    EXPECT_THAT(tree(), IsTree(before));
  }
}

TEST_F(CardWriter, RemovesOnlyFiles) {
  makeFolders(files, "/card/KIT/folder");
  files.addLink("/card/KIT/link", "/card/KIT/kit007.spd");
  EXPECT_EQ(errorOf({{{"KIT/gone", 1}, {"KIT/folder", 2}, {"KIT/link", 3}, {"KIT/kit001.spd", 4}}, {}, {}}),
            std::errc());
  EXPECT_TRUE(failed.deletions.empty());
  EXPECT_EQ(files.entryStatus("/card/KIT/folder").kind, FileKind::folder);
  EXPECT_EQ(files.entryStatus("/card/KIT/link").kind, FileKind::other);
  EXPECT_FALSE(tree().contains("KIT/kit001.spd"));
}

// Clusters of 16 KB: the temporary folder takes one.
TEST_F(CardWriter, AsksForRoomBeforeTheFirstChange) {
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
      files.mount("/card", {.serial = {}, .space = {(fits ? enough : enough - 1) * 16384 + 16383, 16384}});
      writeTree(files, "/card/KIT", {{"a", old}, {"b", old}});
      card = files.rooted("/card");
      EXPECT_EQ(errorOf(plan), fits ? std::errc() : std::errc::no_space_on_device);
      EXPECT_TRUE(fits || tree() == (Tree{{"KIT/a", old}, {"KIT/b", old}}));
    }
  }
}

}  // namespace
}  // namespace tamboro::test
