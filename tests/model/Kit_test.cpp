#include "model/Kit.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "model/Trees.h"

namespace tamboro {
namespace {

Kit kitOf(std::string_view bytes) {
  return {1, tree(bytes)};
}

TEST(Kit, ReadsFallBackToDefaults) {
  const Kit kit = kitOf("<Kit><Level>loud</Level><Fx2Sw>-3</Fx2Sw></Kit>");
  EXPECT_EQ(kit.level(), 100);
  EXPECT_EQ(kit.tempoBPM(), 120.0);
  EXPECT_EQ(kit.name(), "");
  EXPECT_EQ(kit.subName(), "");
  EXPECT_FALSE(kit.isFxOn(1));
  EXPECT_TRUE(kit.isFxOn(2));
}

TEST(Kit, ReadsItsLeaves) {
  const Kit kit = kitOf(
      "<Kit><Nm0>82</Nm0><Nm1>49</Nm1><SubNm0>83</SubNm0><SubNm15>84</SubNm15><Level>7</Level><Tempo>1205</Tempo>"
      "<Fx1Type>3</Fx1Type><Fx2Type>5</Fx2Type><Fx1Sw>1</Fx1Sw><Fx1Prm10>-6</Fx1Prm10><Fx2Prm10>8</Fx2Prm10></Kit>");
  EXPECT_EQ(kit.name(), "R1");
  EXPECT_EQ(kit.subName(), "S");
  EXPECT_EQ(kit.level(), 7);
  EXPECT_EQ(kit.tempoBPM(), 120.5);
  EXPECT_EQ(kit.fxType(1), 3);
  EXPECT_EQ(kit.fxType(2), 5);
  EXPECT_EQ(kit.fxType(0), 5);
  EXPECT_TRUE(kit.isFxOn(1));
  EXPECT_EQ(kit.fxParam(1, 10), -6);
  EXPECT_EQ(kit.fxParam(2, 10), 8);
  EXPECT_EQ(kit.fxParam(2, 11), 0);
}

TEST(Kit, TempoIsStoredInTenthsWithHalvesAwayFromZero) {
  struct {
    double bpm;
    std::int64_t stored;
  } const cases[] = {{120, 1200}, {120.55, 1206}, {120.54, 1205},
                     {-0.05, -1}, {0.04, 0},      {1e30, std::numeric_limits<std::int64_t>::max()}};
  for (const auto& [bpm, stored] : cases) {
    Kit kit = kitOf("<Kit></Kit>");
    kit.setTempoBPM(bpm);
    EXPECT_EQ(kit.node.intValue("Tempo", -7), stored) << bpm;
    EXPECT_FALSE(kit.isDirty);
  }
}

TEST(Kit, AnIndexThatIsNoPadChangesNothing) {
  for (const char* bytes : {"<Kit></Kit>", "<Kit><Level>1</Level></Kit>", "<Kit><PadPrm></PadPrm></Kit>"}) {
    Kit kit = kitOf(bytes);
    const Kit before = kit;
    for (const int index : {-1, kit.padCount(), std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
      EXPECT_FALSE(kit.pad(index));
      EXPECT_FALSE(kit.writePadWave(index, 205));
      EXPECT_FALSE(kit.resetPadValues(index));
      kit.applyPads({{index, tree("<PadPrm>x</PadPrm>")}});
    }
    EXPECT_EQ(kit, before) << bytes;
  }
}

TEST(Kit, PadsOfAnyKindCountAndTheFirstWriteMakesThemContainers) {
  Kit kit = kitOf("<Kit><PadPrm>old</PadPrm><X/><PadPrm/><PadPrm><Wv>12</Wv><Wv>13</Wv></PadPrm></Kit>");
  ASSERT_EQ(kit.padCount(), 3);
  const std::vector<Pad> pads = kit.pads();
  ASSERT_EQ(pads.size(), 3u);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(pads[static_cast<std::size_t>(i)], kit.pad(i));
  EXPECT_EQ(pads[0].wave(), noWave);
  EXPECT_EQ(pads[1].note(), 60);
  EXPECT_EQ(pads[2].wave(), 12);

  EXPECT_TRUE(kit.writePadWave(0, 205));
  EXPECT_TRUE(kit.writePadNote(1, 40));
  EXPECT_TRUE(kit.clearPadWave(2));
  EXPECT_TRUE(kit.isDirty);
  EXPECT_EQ(bytesOf(kit.node),
            "<Kit><PadPrm>\n\t\t<Wv>205</Wv>\n\t</PadPrm><X/><PadPrm>\n\t\t<NoteNum>40</NoteNum>\n\t</PadPrm>"
            "<PadPrm><Wv>-1</Wv><Wv>13</Wv></PadPrm></Kit>");
}

TEST(Kit, OnlyADifferentTreeMakesItDirty) {
  Kit kit = kitOf("<Kit><PadPrm><Wv>12</Wv><VoiceAsgn>1</VoiceAsgn></PadPrm></Kit>");
  EXPECT_FALSE(kit.writePadWave(0, 12));
  EXPECT_FALSE(kit.writePadPoly(0, true));
  EXPECT_FALSE(kit.updatePad(0, [](Pad&) {}));
  EXPECT_FALSE(kit.isDirty);
  // A default that was not in the file is a change of the tree.
  EXPECT_TRUE(kit.writePadNote(0, 60));
  EXPECT_TRUE(kit.isDirty);
}

TEST(Kit, WritersClampAndNormalise) {
  Kit kit = kitOf("<Kit><PadPrm></PadPrm></Kit>");
  const auto stored = [&kit](std::string_view leaf) { return kit.pad(0)->node.intValue(leaf, -99); };
  kit.writePadNote(0, 200);
  EXPECT_EQ(stored("NoteNum"), 127);
  kit.writePadNote(0, -5);
  EXPECT_EQ(stored("NoteNum"), 0);
  kit.writePadPoly(0, true);
  EXPECT_EQ(stored("VoiceAsgn"), 1);
  kit.writePadPoly(0, false);
  EXPECT_EQ(stored("VoiceAsgn"), 0);
  kit.writePadWave(0, -40);
  EXPECT_EQ(stored("Wv"), -40);
}

TEST(Kit, AppliedPadsReplaceWholeElementsInListOrder) {
  Kit kit = kitOf("<Kit><PadPrm>a</PadPrm>  <PadPrm>b</PadPrm></Kit>");
  const std::vector<Pad> pads = kit.pads();
  kit.applyPads({{1, pads[0].node}, {0, tree("<PadPrm>c</PadPrm>")}, {0, pads[1].node}, {7, pads[0].node}});
  EXPECT_EQ(bytesOf(kit.node), "<Kit>  <PadPrm>b</PadPrm><PadPrm>a</PadPrm></Kit>");
  EXPECT_FALSE(kit.isDirty);
}

}  // namespace
}  // namespace tamboro
