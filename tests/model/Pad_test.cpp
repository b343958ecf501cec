#include "model/Pad.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/Note.h"
#include "model/PadLayout.h"
#include "model/Trees.h"

namespace tamboro {
namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();

TEST(Pad, ReadsItsLeavesUnchecked) {
  const Pad pad{3, tree("<PadPrm><Wv>3</Wv><SubWv>4</SubWv><SubWvLevel>500</SubWvLevel><SubWvPan>6</SubWvPan>"
                        "<WvPan>70</WvPan><OutAsgn>9</OutAsgn><PadMidiCh>16</PadMidiCh><MuteGrp>12</MuteGrp>"
                        "<TrigType>7</TrigType><VoiceAsgn>0</VoiceAsgn><Loop>2</Loop><Reverse>-1</Reverse></PadPrm>")};
  EXPECT_EQ((std::vector{pad.wave(), pad.subWave(), pad.level(), pad.pan(), pad.subLevel(), pad.subPan(), pad.note(),
                         pad.muteGroup(), pad.triggerType(), pad.outputAssign(), pad.midiChannel()}),
            (std::vector<std::int64_t>{3, 4, 100, 70, 500, 6, 60, 12, 7, 9, 16}));
  EXPECT_EQ((std::vector{pad.isPoly(), pad.loop(), pad.tempoSync(), pad.dynamics(), pad.reverse()}),
            (std::vector{false, true, false, false, true}));
}

TEST(Pad, LeavesStoreWithinTheirForm) {
  // The lowest and the highest are those of the leaf's form, where it has one.
  using namespace elements;
  const std::pair<IntegerLeaf, const char*> cases[] = {{padSetting("padVolume").leaf, "0 100"},
                                                       {padSetting("subVolume").leaf, "0 100"},
                                                       {padSetting("padPan").leaf, "0 30"},
                                                       {padSetting("subPan").leaf, "0 30"},
                                                       {padSetting("note").leaf, "0 127"},
                                                       {padSetting("muteGroup").leaf, "0 8"},
                                                       {kitLevel, "0 100"},
                                                       {padSetting("loop").leaf, "1 1"},
                                                       {padSetting("poly").leaf, "1 1"},
                                                       {fxSwitch(1), "1 1"},
                                                       {padSetting("triggerType").leaf, "-9 500"},
                                                       {padSetting("subSound").leaf, "-9 500"},
                                                       {padSetting("output").leaf, "-9 500"},
                                                       {padSetting("midiChannel").leaf, "-9 500"},
                                                       {fxType(2), "-9 500"}};
  for (const auto& [leaf, expected] : cases)
    EXPECT_EQ(std::to_string(leaf.stored(-9)) + " " + std::to_string(leaf.stored(500)), expected) << leaf.name;
}

TEST(Pad, PanText) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {15, "CENTER"}, {14, "L1"}, {30, "R15"}, {-1, "L16"}, {lowest, "L9223372036854775823"}};
  for (const auto& [pan, text] : cases)
    EXPECT_EQ(panText(pan), text);
}

TEST(Note, NamesAndPickersOfAnyNumber) {
  const std::tuple<std::int64_t, const char*, int, std::int64_t> cases[] = {
      {60, "C4 (middle C)", 0, 4}, {61, "C#/Db4", 1, 4}, {11, "B-1", 11, -1},
      {127, "G9", 7, 9},           {-1, "-1", 11, -2},   {128, "128", 8, 9}};
  for (const auto& [number, name, pitch, octave] : cases) {
    EXPECT_EQ(noteName(number), name);
    EXPECT_EQ(pitchOf(number), pitch) << number;
    EXPECT_EQ(octaveOf(number), octave) << number;
  }
  EXPECT_EQ(noteWithPitch(61, 11), 71);
  EXPECT_EQ(noteWithPitch(127, 9), 127);
  EXPECT_EQ(noteWithPitch(lowest, 11), 0);
  EXPECT_EQ(noteWithOctave(69, 9), 127);
  EXPECT_EQ(noteWithOctave(-1, 0), 23);
}

TEST(PadLayout, GroupsByCountAndLabels) {
  EXPECT_EQ(padLayout(0), (PadLayout{{0, 0}, {9, 0}, {13, 0}}));
  EXPECT_EQ(padLayout(10), (PadLayout{{0, 9}, {9, 1}, {13, 0}}));
  EXPECT_EQ(padLayout(40), (PadLayout{{0, 9}, {9, 4}, {13, 2}}));
  std::string labels;
  for (const int index : {-1, 0, 8, 9, 12, 13, 14, 15})
    labels += padLabel(index) + ",";
  EXPECT_EQ(labels, ",Pad 1,Pad 9,Trig 1,Trig 4,FS 1,FS 2,,");
}

}  // namespace
}  // namespace tamboro
