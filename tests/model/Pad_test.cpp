#include "model/Pad.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/Note.h"
#include "model/PadLayout.h"
#include "model/Trees.h"

namespace tamboro {
namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(Pad, ReadsItsLeavesUnchecked) {
  const Pad pad{3, tree("<PadPrm><SubWv>4</SubWv><SubWvLevel>5</SubWvLevel><SubWvPan>6</SubWvPan><WvPan>70</WvPan>"
                        "<OutAsgn>9</OutAsgn><PadMidiCh>16</PadMidiCh><MuteGrp>12</MuteGrp><TrigType>7</TrigType>"
                        "<VoiceAsgn>0</VoiceAsgn><Loop>2</Loop><Reverse>-1</Reverse></PadPrm>")};
  EXPECT_EQ(pad.subWave(), 4);
  EXPECT_EQ(pad.subLevel(), 5);
  EXPECT_EQ(pad.subPan(), 6);
  EXPECT_EQ(pad.level(), 100);
  EXPECT_EQ(pad.pan(), 70);
  EXPECT_EQ(pad.outputAssign(), 9);
  EXPECT_EQ(pad.midiChannel(), 16);
  EXPECT_EQ(pad.muteGroup(), 12);
  EXPECT_EQ(pad.triggerType(), 7);
  EXPECT_FALSE(pad.isPoly());
  EXPECT_TRUE(pad.loop());
  EXPECT_FALSE(pad.tempoSync());
  EXPECT_FALSE(pad.dynamics());
  EXPECT_TRUE(pad.reverse());
}

TEST(Pad, ResetWritesFifteenLeavesAndKeepsTheRest) {
  Pad pad{0, tree("<PadPrm><NoteNum>40</NoteNum><Own>1</Own><WvPan>3</WvPan></PadPrm>")};
  pad.resetValues();
  EXPECT_EQ(bytesOf(pad.node),
            "<PadPrm><NoteNum>40</NoteNum><Own>1</Own><WvPan>15</WvPan>\n\t<Wv>-1</Wv>\n\t<SubWv>-1</SubWv>"
            "\n\t<WvLevel>100</WvLevel>\n\t<MuteGrp>0</MuteGrp>\n\t<Loop>0</Loop>\n\t<TempoSync>0</TempoSync>"
            "\n\t<Dynamics>0</Dynamics>\n\t<Reverse>0</Reverse>\n\t<VoiceAsgn>1</VoiceAsgn>\n\t<TrigType>0</TrigType>"
            "\n\t<OutAsgn>0</OutAsgn>\n\t<PadMidiCh>-1</PadMidiCh>\n\t<SubWvLevel>100</SubWvLevel>"
            "\n\t<SubWvPan>15</SubWvPan></PadPrm>");
}

TEST(Pad, LeavesStoreWithinTheirForm) {
  using namespace elements;
  struct {
    IntegerLeaf leaf;
    std::int64_t given;
    std::int64_t stored;
  } const cases[] = {
      {padSetting("padVolume").leaf, 101, 100}, {padSetting("padVolume").leaf, -1, 0},
      {padSetting("padPan").leaf, 31, 30},      {padSetting("subVolume").leaf, 500, 100},
      {padSetting("subPan").leaf, -2, 0},       {padSetting("note").leaf, 128, 127},
      {padSetting("muteGroup").leaf, 9, 8},     {kitLevel, 250, 100},
      {padSetting("loop").leaf, -3, 1},         {padSetting("poly").leaf, 7, 1},
      {padSetting("poly").leaf, 0, 0},          {fxSwitch(1), 2, 1},
      {padSetting("triggerType").leaf, 7, 7},   {padSetting("output").leaf, -9, -9},
      {padSetting("midiChannel").leaf, 99, 99}, {fxType(2), 50, 50},
  };
  for (const auto& [leaf, given, stored] : cases) {
    SpdNode node = SpdNode::container("PadPrm", {});
    leaf.write(node, given);
    EXPECT_EQ(node.intValue(leaf.name, -77), stored) << leaf.name << " " << given;
  }
}

TEST(Pad, PanText) {
  struct {
    std::int64_t pan;
    const char* text;
  } const cases[] = {{15, "CENTER"}, {14, "L1"},  {16, "R1"},   {0, "L15"},
                     {30, "R15"},    {-1, "L16"}, {100, "R85"}, {lowest, "L9223372036854775823"}};
  for (const auto& [pan, text] : cases)
    EXPECT_EQ(panText(pan), text);
}

TEST(Note, Names) {
  struct {
    std::int64_t number;
    const char* name;
  } const cases[] = {{60, "C4 (middle C)"}, {61, "C#/Db4"}, {0, "C-1"},  {11, "B-1"}, {12, "C0"},
                     {127, "G9"},           {-1, "-1"},     {128, "128"}};
  for (const auto& [number, name] : cases)
    EXPECT_EQ(noteName(number), name);
}

TEST(Note, PickersUseFloorDivision) {
  struct {
    std::int64_t number;
    int pitch;
    std::int64_t octave;
  } const cases[] = {{60, 0, 4}, {127, 7, 9}, {0, 0, -1}, {-1, 11, -2}, {-12, 0, -2}, {-13, 11, -3}, {129, 9, 9}};
  for (const auto& [number, pitch, octave] : cases) {
    EXPECT_EQ(pitchOf(number), pitch) << number;
    EXPECT_EQ(octaveOf(number), octave) << number;
  }
  EXPECT_EQ(noteWithPitch(127, 9), 127);
  EXPECT_EQ(noteWithPitch(61, 11), 71);
  EXPECT_EQ(noteWithOctave(69, 9), 127);
  EXPECT_EQ(noteWithOctave(60, -1), 0);
  EXPECT_EQ(noteWithOctave(-1, 0), 23);
  EXPECT_EQ(noteWithPitch(lowest, 11), 0);
  EXPECT_EQ(noteWithPitch(highest, 0), 127);
  EXPECT_EQ(noteWithPitch(-1, 11), 0);
}

TEST(PadLayout, GroupsByCount) {
  struct {
    int count;
    PadLayout layout;
  } const cases[] = {
      {0, {{0, 0}, {9, 0}, {13, 0}}},  {9, {{0, 9}, {9, 0}, {13, 0}}},  {10, {{0, 9}, {9, 1}, {13, 0}}},
      {14, {{0, 9}, {9, 4}, {13, 1}}}, {15, {{0, 9}, {9, 4}, {13, 2}}}, {40, {{0, 9}, {9, 4}, {13, 2}}},
  };
  for (const auto& [count, layout] : cases)
    EXPECT_EQ(padLayout(count), layout) << count;
}

TEST(PadLayout, Labels) {
  struct {
    int index;
    const char* label;
  } const cases[] = {{0, "Pad 1"}, {8, "Pad 9"}, {9, "Trig 1"}, {12, "Trig 4"},
                     {13, "FS 1"}, {14, "FS 2"}, {15, ""},      {-1, ""}};
  for (const auto& [index, label] : cases)
    EXPECT_EQ(padLabel(index), label);
}

}  // namespace
}  // namespace tamboro
