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

TEST(WaveListIndex, Layout) {
  const std::vector<Wave> waves = {wave(2, 5, "b"), wave(2, 6, "a", 7), wave(2, 7, "A"), wave(2, 8, "a", -1)};
  const auto [byName, byTagNumber, byTagName] = buildWaveListIndexes(waves, 2);
  EXPECT_EQ(byName.serialize(),
            "<WvListSortbyName>\n\t<Wv>206</Wv>\n\t<Wv>207</Wv>\n\t<Wv>208</Wv>\n\t<Wv>205</Wv>\n"
            "</WvListSortbyName>\n");
  EXPECT_EQ(byTagNumber.serialize(),
            "<WvListSortbyNum_Tag>\n\t<WvList>\n\t\t<Wv>205</Wv>\n\t\t<Wv>207</Wv>\n\t</WvList>\n\t<WvList>\n"
            "\t</WvList>\n</WvListSortbyNum_Tag>\n");
  EXPECT_EQ(byTagName.serialize(),
            "<WvListSortbyName_Tag>\n\t<WvList>\n\t\t<Wv>207</Wv>\n\t\t<Wv>205</Wv>\n\t</WvList>\n\t<WvList>\n"
            "\t</WvList>\n</WvListSortbyName_Tag>\n");
}

TEST(WaveListIndex, OrderByName) {
  const std::vector<std::vector<std::string>> cases = {
      {"", " ", "1", "a", "a10", "a2", "B", "c"},  // by case-folded code points, no natural numbers
      {"ééééééééa", "ééééééééb", "éééééééééé"},    // behind a common start of sixteen bytes
      {"\uFF5E", "\U0001F941"},                    // scalar values, not UTF-16 units
      {"q\u0301", "é", "e\u0323\u0302"},           // composed before compared
  };
  for (const std::vector<std::string>& ascending : cases) {
    std::vector<Wave> waves;
    for (const std::string& name : ascending)  // the first gets the highest id, so that ids can't make the order
      waves.push_back(wave(3, 50 - static_cast<std::int64_t>(waves.size()), name));
    std::vector<WaveId> expected;
    std::ranges::transform(waves, std::back_inserter(expected), &Wave::id);
    std::ranges::reverse(waves);
    EXPECT_EQ(idsOf(buildNameIndex(waves).root), expected) << ascending.back();
  }
  const std::vector<Wave> equal = {wave(4, 2, "é"), wave(4, 1, "E\u0301"), wave(5, 1, "ééééééééA"),
                                   wave(5, 0, "ÉÉÉÉÉÉÉÉa")};
  EXPECT_EQ(idsOf(buildNameIndex(equal).root), (std::vector<WaveId>{401, 402, 500, 501})) << "equal names go by id";
}

}  // namespace
}  // namespace tamboro
