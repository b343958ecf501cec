#include "model/Wave.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/TagList.h"
#include "model/Trees.h"
#include "model/WaveUsage.h"

namespace tamboro {
namespace {

TEST(Wave, Ids) {
  constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(waveId(-2, 5), -195);
  EXPECT_EQ(waveId(highest / 100, 99), highest);
  EXPECT_EQ(waveId(lowest, 5), lowest);
  EXPECT_EQ((WaveUsage{3, "Rock", 14, true}.id()), "3-14-true");
}

TEST(Wave, RelativeAudioPath) {
  const std::string kick = "<Nm0>75</Nm0><Nm1>105</Nm1>";
  const std::tuple<std::int64_t, std::string, const char*> cases[] = {
      {2, kick, "02/Ki.wav"},
      {-5, "<Nm0>0</Nm0>", "-5/.wav"},
      {2, kick + "<Path>07/A long name.WAV</Path>", "07/A long name.WAV"},
      {2, kick + "<Path></Path>", ""},
      {2, kick + "<Path><X/></Path>", ""}};
  for (const auto& [bank, leaves, path] : cases)
    EXPECT_EQ((Wave{bank, 0, tree("<WvPrm>" + leaves + "</WvPrm>")}.relativeAudioPath()), path) << leaves;
}

TEST(Wave, ANewSampleLaysOutItsLeaves) {
  EXPECT_EQ(bytesOf(newWaveNode("Thirteen char", 3, "02/kick.wav")),
            "<WvPrm>\n\t<Nm0>84</Nm0>\n\t<Nm1>104</Nm1>\n\t<Nm2>105</Nm2>\n\t<Nm3>114</Nm3>\n\t<Nm4>116</Nm4>"
            "\n\t<Nm5>101</Nm5>\n\t<Nm6>101</Nm6>\n\t<Nm7>110</Nm7>\n\t<Nm8>32</Nm8>\n\t<Nm9>99</Nm9>"
            "\n\t<Nm10>104</Nm10>\n\t<Nm11>97</Nm11>\n\t<Tag>3</Tag>\n\t<Tempo>1200</Tempo>\n\t<Beat>4</Beat>"
            "\n\t<Measure>0</Measure>\n\t<Start>0</Start>\n\t<End>0</End>\n\t<Path>02/kick.wav</Path>\n</WvPrm>");
}

TEST(Wave, ReadsItsLeavesAndMeasureOnlyHasToBeThere) {
  const Wave wave{2, 0, tree("<WvPrm><Measure/><Start>8</Start><End>9</End></WvPrm>")};
  EXPECT_EQ((std::vector{wave.tag(), wave.tempo(), wave.beat(), wave.start(), wave.end()}),
            (std::vector<std::int64_t>{0, 1200, 4, 8, 9}));
  EXPECT_TRUE(wave.hasMeasure());
  EXPECT_FALSE(wave.isFactory());
  EXPECT_TRUE((Wave{1, 0, tree("<WvPrm/>")}.isFactory()));
}

TEST(TagList, NamesByPositionAndSkipsWhatIsNone) {
  TagList list{tree("<Tags><TagPrm><Nm0>65</Nm0></TagPrm><Other/><TagPrm/></Tags>")};
  const TagList before = list;
  for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{2}}) {
    EXPECT_EQ(list.tagName(index), std::nullopt);
    list.setTagName(index, "X");
  }
  EXPECT_EQ(list, before);
  list.setTagName(1, "Thirteen char");
  EXPECT_EQ(list.tagName(0), "A");
  EXPECT_EQ(list.tags()[1].name(), "Thirteen cha");
  list.applyTags({{5, list.node}, {-1, list.node}, before.tags()[1]});
  EXPECT_EQ(list, before);
}

}  // namespace
}  // namespace tamboro
