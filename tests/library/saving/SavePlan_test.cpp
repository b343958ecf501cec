#include "library/saving/SavePlan.h"

#include <gmock/gmock.h>

#include "library/saving/SaveFixture.h"

namespace tamboro::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> names(const std::vector<Path>& paths) {
  return {paths.begin(), paths.end()};
}

std::vector<std::string> names(const std::vector<PlannedRemoval>& removals) {
  std::vector<std::string> names;
  for (const PlannedRemoval& removal : removals)
    names.push_back(removal.file);
  return names;
}

std::vector<std::string> names(const std::vector<PlannedFile>& files) {
  std::vector<std::string> names;
  for (const PlannedFile& file : files)
    names.push_back(file.path);
  return names;
}

SavePlan planOf(const SaveSnapshot& snapshot) {
  const MemoryFileSystem card;
  ExportResult result;
  return makeSavePlan(snapshot, card, result);
}

TEST(SavePlan, PutsEverythingInItsOrder) {
  const SaveFixture fixture;
  ExportResult result;
  const SavePlan plan = makeSavePlan(fixture.snapshot, *fixture.files.rooted("/card"), result);
  // kick.wav stays for sample 201, whose path differs in case; kit002.spd stays to be replaced.
  EXPECT_THAT(names(plan.removals), ElementsAre("WAVE/PRM/02/00.spd", "WAVE/PRM/02/02.spd", "WAVE/DATA/02/snare.wav",
                                                "KIT/kit007.spd", "KIT/kit2.spd"));
  EXPECT_THAT(names(plan.folders), ElementsAre("WAVE", "WAVE/DATA", "WAVE/PRM", "WAVE/DATA/02", "WAVE/DATA/03",
                                               "WAVE/PRM/02", "WAVE/PRM/03"));
  EXPECT_THAT(names(plan.files),
              ElementsAre("WAVE/DATA/02/new.wav", "WAVE/DATA/03/hat.wav", "WAVE/PRM/02/01.spd", "WAVE/PRM/02/02.spd",
                          "WAVE/PRM/03/00.spd", "KIT/kit001.spd", "KIT/kit002.spd", "SYSTEM/tag_list.spd",
                          "SYSTEM/wavelist_name.spd", "SYSTEM/wavelist_tagnum.spd", "SYSTEM/wavelist_tagname.spd"));
  EXPECT_EQ(std::get<Path>(plan.files[0].content), "/staging/new.wav");
  EXPECT_EQ(result.updatedWaveDocs.size(), 3U);
  EXPECT_EQ(result.updatedKitDocs.at(2).serialize(), std::get<std::string>(plan.files[6].content));
  EXPECT_EQ(result.updatedTagListDoc->serialize(), std::get<std::string>(plan.files[7].content));
}

TEST(SavePlan, OfNothingWritesTheIndexesOnly) {
  SaveSnapshot snapshot;
  snapshot.tagList = TagList{SpdNode::container("TagList", {}), false};
  const SavePlan plan = planOf(snapshot);
  EXPECT_THAT(plan.removals, IsEmpty());
  EXPECT_THAT(plan.folders, IsEmpty());
  EXPECT_EQ(plan.files.size(), 3U);
  EXPECT_EQ(std::get<std::string>(plan.files[0].content), "<WvListSortbyName>\n</WvListSortbyName>\n");
}

TEST(SavePlan, KeepsAudioThatAnySampleNames) {
  const struct {
    const char* deleted;
    const char* kept;
    bool isKept;
  } cases[] = {{"02/a.wav", "02/b.wav", false},
               {"02/a.wav", "02/A.WAV", true},
               {"02/a\xCC\x88.wav", "02/\xC3\xA4.wav", true},
               {"02/a.wav", "/x/../02/./a.wav", true},
               {"02/a.wav", "02/a.wav. ", true},
               {"02/a.wav", "03/a.wav", false},
               {"", "02/a.wav", true},
               {"../../KIT/kit001.spd", "02/a.wav", true}};
  for (const auto& [deleted, kept, isKept] : cases) {
    SaveSnapshot snapshot;
    snapshot.deletions = {{200, sample(2, 0, deleted)}};
    snapshot.waves = {sample(5, 0, kept)};
    EXPECT_EQ(planOf(snapshot).removals.size(), isKept ? 1U : 2U) << deleted << " and " << kept;
    snapshot.waves.clear();
    EXPECT_LE(planOf(snapshot).removals.size(), 2U);
  }
}

TEST(SavePlan, LeavesOutAudioWithoutSourceOrPlace) {
  SaveSnapshot snapshot;
  snapshot.dirtyWaves = {sample(2, 0, "02/unstaged.wav", true), sample(2, 1, "", true), sample(2, 2, "02/..", true),
                         sample(2, 3, "02/on card.wav", false)};
  snapshot.stagedAudioFiles = {{201, "/s/1"}, {202, "/s/2"}, {203, "/s/3"}};
  const SavePlan plan = planOf(snapshot);
  ASSERT_EQ(plan.files.size(), 4U + 3U);
  EXPECT_EQ(plan.files[0].path, "WAVE/PRM/02/00.spd");
}

TEST(SavePlan, TakesLayoutFromTheStoredDocument) {
  const SpdDocument stored{SpdNode::leaf("x", ""), LineSeparator::crlf, "tail"};
  const SpdNode empty = SpdNode::container("K", {});
  EXPECT_EQ(waveDocument({2, 0, empty}, nullptr).serialize(), "<K>\n</K>\n");
  EXPECT_EQ(kitDocument({1, empty}, nullptr).serialize(), "<K>\n</K>");
  EXPECT_EQ(tagListDocument({empty}, nullptr).serialize(), "<K>\r\n</K>\r\n");
  EXPECT_EQ(waveDocument({2, 0, empty}, &stored).serialize(), "<K>\r\n</K>tail");
}

// A cut save of thousands leaves whole samples: audio of one group, then its parameters, then the next group.
TEST(SavePlan, GroupsSamples) {
  SaveSnapshot snapshot;
  for (int i = 0; i < 250; ++i) {
    const std::string path = "02/" + std::to_string(i);
    snapshot.dirtyWaves.push_back(sample(2 + i / 100, i % 100, path, true));
    snapshot.stagedAudioFiles[snapshot.dirtyWaves.back().id()] = "/s/" + path;
  }
  const SavePlan plan = planOf(snapshot);
  ASSERT_EQ(plan.files.size(), 503U);
  for (const std::size_t first : {0U, 400U}) {
    const std::size_t size = first == 400 ? 50 : 200;
    for (std::size_t i = first; i < first + 2 * size; ++i)
      EXPECT_EQ(plan.files[i].content.index(), i < first + size ? 1U : 0U) << i;
  }
}

}  // namespace
}  // namespace tamboro::test
