#include "model/WaveListIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "model/Trees.h"

namespace tamboro {
namespace {

std::vector<WaveId> idsOf(const SpdNode& list) {
  std::vector<WaveId> ids;
  for (const SpdNode& entry : list.children())
    ids.push_back(std::stoll(std::string(entry.text())));
  return ids;
}

std::vector<std::vector<WaveId>> listsOf(const SpdDocument& document) {
  std::vector<std::vector<WaveId>> lists;
  for (const SpdNode& list : document.root.children())
    lists.push_back(idsOf(list));
  return lists;
}

TEST(WaveListIndex, EmptyIndexesHoldOnlyTheirRoot) {
  const auto [byName, byTagNumber, byTagName] = buildWaveListIndexes({}, 0);
  EXPECT_EQ(byName.serialize(), "<WvListSortbyName>\n</WvListSortbyName>\n");
  EXPECT_EQ(byTagNumber.serialize(), "<WvListSortbyNum_Tag>\n</WvListSortbyNum_Tag>\n");
  EXPECT_EQ(byTagName.serialize(), "<WvListSortbyName_Tag>\n</WvListSortbyName_Tag>\n");
}

TEST(WaveListIndex, Layout) {
  const std::vector<Wave> waves = {wave(2, 5, "a"), wave(2, 6, "b", 7)};
  EXPECT_EQ(buildNameIndex(waves).serialize(),
            "<WvListSortbyName>\n\t<Wv>205</Wv>\n\t<Wv>206</Wv>\n</WvListSortbyName>\n");
  EXPECT_EQ(buildTagNumberIndex(waves, 2).serialize(),
            "<WvListSortbyNum_Tag>\n\t<WvList>\n\t\t<Wv>205</Wv>\n\t</WvList>\n\t<WvList>\n\t</WvList>\n"
            "</WvListSortbyNum_Tag>\n");
}

TEST(WaveListIndex, OrderByName) {
  struct {
    const char* what;
    std::vector<std::string> ascending;  // the first gets the highest id, so that ids can't make the order
  } const cases[] = {
      {"case", {"a", "B", "c"}},
      {"no natural numbers", {"a10", "a2"}},
      {"prefixes and blanks", {"", " ", " a", "1", "A", "a ", "aa"}},
      {"behind a common start of sixteen bytes", {"ééééééééa", "ééééééééb", "éééééééééé"}},
      {"scalar values, not UTF-16 units", {"\uFF5E", "\U0001F941"}},
      {"composed before compared", {"q\u0301", "é", "e\u0323\u0302"}},
  };
  for (const auto& [what, ascending] : cases) {
    std::vector<Wave> waves;
    std::vector<WaveId> expected;
    for (const std::string& name : ascending) {
      waves.push_back(wave(3, 50 - static_cast<std::int64_t>(waves.size()), name));
      expected.push_back(waves.back().id());
    }
    std::ranges::sort(waves, {}, &Wave::id);
    EXPECT_EQ(idsOf(buildNameIndex(waves).root), expected) << what;
    std::ranges::reverse(waves);
    EXPECT_EQ(idsOf(buildNameIndex(waves).root), expected) << what;
  }
}

TEST(WaveListIndex, EqualNamesGoById) {
  const std::vector<Wave> waves = {wave(3, 5, "kick"),       wave(2, 4, "Kick"),      wave(2, 10, "KICK"),
                                   wave(4, 2, "é"),          wave(4, 1, "E\u0301"),   wave(4, 0, "É"),
                                   wave(5, 1, "éééééééééa"), wave(5, 0, "ÉÉÉÉÉÉÉÉÉA")};
  EXPECT_EQ(idsOf(buildNameIndex(waves).root), (std::vector<WaveId>{204, 210, 305, 400, 401, 402, 500, 501}));
  // The first cell is 0: an empty name, whatever stands behind it.
  const std::vector<Wave> nameless = {wave(2, 2, " "), {2, 1, tree("<WvPrm><Nm1>90</Nm1></WvPrm>")}, wave(2, 0, "")};
  EXPECT_EQ(idsOf(buildNameIndex(nameless).root), (std::vector<WaveId>{200, 201, 202}));
}

TEST(WaveListIndex, TagListsHoldTheSamplesOfTheirTag) {
  std::vector<Wave> waves = {
      wave(2, 9, "b", 1),  wave(2, 3, "c", 1), wave(2, 4, "A", 1), {2, 0, tree("<WvPrm><Tag>x</Tag></WvPrm>")},
      wave(2, 1, "z", -1), wave(2, 2, "z", 3), wave(2, 5, "y", 0), wave(2, 6, "z", INT64_MAX)};
  waves[0].isPending = true;
  const auto [byName, byTagNumber, byTagName] = buildWaveListIndexes(waves, 3);
  EXPECT_EQ(idsOf(byName.root), (std::vector<WaveId>{200, 204, 209, 203, 205, 201, 202, 206}));
  EXPECT_EQ(listsOf(byTagNumber), (std::vector<std::vector<WaveId>>{{200, 205}, {203, 204, 209}, {}}));
  EXPECT_EQ(listsOf(byTagName), (std::vector<std::vector<WaveId>>{{200, 205}, {204, 209, 203}, {}}));
  // One by one they are the same documents.
  EXPECT_EQ(buildNameIndex(waves).root, byName.root);
  EXPECT_EQ(buildTagNumberIndex(waves, 3).root, byTagNumber.root);
  EXPECT_EQ(buildTagNameIndex(waves, 3).root, byTagName.root);
  EXPECT_TRUE(listsOf(buildTagNumberIndex(waves, -1)).empty());
}

}  // namespace
}  // namespace tamboro
