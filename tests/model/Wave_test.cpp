#include "model/Wave.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/TagList.h"
#include "model/Trees.h"
#include "model/WaveUsage.h"

namespace tamboro {
namespace {

TEST(Wave, IdsSaturate) {
  constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(waveId(2, 5), 205);
  EXPECT_EQ(waveId(-2, 5), -195);
  EXPECT_EQ(waveId(highest, 0), highest);
  EXPECT_EQ(waveId(highest / 100, 99), highest);
  EXPECT_EQ(waveId(lowest, 5), lowest);
  EXPECT_EQ(waveId(0, highest), highest);
  EXPECT_EQ(waveId(-1, lowest), lowest);
}

TEST(Wave, RelativeAudioPath) {
  const std::string kick = "<Nm0>75</Nm0><Nm1>105</Nm1><Nm2>99</Nm2><Nm3>107</Nm3>";
  struct {
    std::int64_t bank;
    std::string leaves;
    const char* path;
  } const cases[] = {
      {2, kick, "02/Kick.wav"},
      {99, "<Nm0>0</Nm0>", "99/.wav"},
      {123, kick, "123/Kick.wav"},
      {-5, kick, "-5/Kick.wav"},
      {2, kick + "<Path>07/A long name.WAV</Path>", "07/A long name.WAV"},
      {2, kick + "<Path></Path>", ""},
      {2, kick + "<Path/>", ""},
      {2, kick + "<Path><X/></Path>", ""},
  };
  for (const auto& [bank, leaves, path] : cases) {
    EXPECT_EQ((Wave{bank, 0, tree("<WvPrm>" + leaves + "</WvPrm>")}.relativeAudioPath()), path) << leaves;
  }
}

TEST(Wave, ANewSampleLaysOutItsLeaves) {
  const SpdNode node = newWaveNode("Thirteen char", 3, "02/kick.wav");
  EXPECT_EQ(bytesOf(node),
            "<WvPrm>\n\t<Nm0>84</Nm0>\n\t<Nm1>104</Nm1>\n\t<Nm2>105</Nm2>\n\t<Nm3>114</Nm3>\n\t<Nm4>116</Nm4>"
            "\n\t<Nm5>101</Nm5>\n\t<Nm6>101</Nm6>\n\t<Nm7>110</Nm7>\n\t<Nm8>32</Nm8>\n\t<Nm9>99</Nm9>"
            "\n\t<Nm10>104</Nm10>\n\t<Nm11>97</Nm11>\n\t<Tag>3</Tag>\n\t<Tempo>1200</Tempo>\n\t<Beat>4</Beat>"
            "\n\t<Measure>0</Measure>\n\t<Start>0</Start>\n\t<End>0</End>\n\t<Path>02/kick.wav</Path>\n</WvPrm>");
}

TEST(Wave, ReadsFallBackAndMeasureOnlyHasToBeThere) {
  const Wave empty{1, 0, tree("<WvPrm/>")};
  EXPECT_EQ(empty.tag(), 0);
  EXPECT_EQ(empty.tempo(), 1200);
  EXPECT_EQ(empty.beat(), 4);
  EXPECT_EQ(empty.start(), 0);
  EXPECT_EQ(empty.end(), 0);
  EXPECT_FALSE(empty.hasMeasure());
  EXPECT_TRUE(empty.isFactory());
  const Wave loop{2, 0, tree("<WvPrm><Measure/><Start>8</Start><End>9</End></WvPrm>")};
  EXPECT_TRUE(loop.hasMeasure());
  EXPECT_EQ(loop.start(), 8);
  EXPECT_EQ(loop.end(), 9);
  EXPECT_FALSE(loop.isFactory());
}

TEST(TagList, NamesByPosition) {
  TagList list{tree("<Tags><TagPrm><Nm0>65</Nm0></TagPrm><Other/><TagPrm/></Tags>")};
  EXPECT_EQ(list.tagCount(), 2);
  EXPECT_EQ(list.tagName(0), "A");
  EXPECT_EQ(list.tagName(1), "");
  const TagList before = list;
  for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{2}, std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_EQ(list.tagName(index), std::nullopt);
    list.setTagName(index, "X");
  }
  EXPECT_EQ(list, before);

  list.setTagName(1, "Thirteen char");
  EXPECT_EQ(list.tagName(0), "A");
  EXPECT_EQ(list.tagName(1), "Thirteen cha");
  EXPECT_EQ(list.tags()[1].name(), "Thirteen cha");
  EXPECT_FALSE(list.isDirty);

  list.applyTags({{5, list.node}, {-1, list.node}, before.tags()[1]});
  EXPECT_EQ(list, before);
}

TEST(TagList, MayBeEmpty) {
  const TagList list{tree("<Tags></Tags>")};
  EXPECT_TRUE(list.tags().empty());
  EXPECT_EQ(list.tagName(0), std::nullopt);
}

TEST(WaveUsage, Identity) {
  EXPECT_EQ((WaveUsage{3, "Rock", 14, true}.id()), "3-14-true");
  EXPECT_EQ((WaveUsage{31, "Rock", 4, false}.id()), "31-4-false");
}

}  // namespace
}  // namespace tamboro
