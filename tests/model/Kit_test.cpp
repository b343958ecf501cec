// What reads and writes of a kit do beyond an edit of the store, which tests/library tries on each setting.

#include "model/Kit.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/Trees.h"

namespace tamboro {
namespace {

TEST(Kit, ReadsItsLeavesOrTheirDefaults) {
  const Kit kit{
      1,
      tree("<Kit><Nm0>82</Nm0><Nm1>49</Nm1><SubNm0>83</SubNm0><SubNm15>84</SubNm15><Level>7</Level><Tempo>1205</Tempo>"
           "<Fx1Type>3</Fx1Type><Fx2Type>5</Fx2Type><Fx1Sw>-1</Fx1Sw><Fx1Prm10>-6</Fx1Prm10><Fx2Prm10>8</Fx2Prm10>"
           "</Kit>")};
  EXPECT_EQ(kit.name() + "," + kit.subName(), "R1,S");
  EXPECT_EQ(kit.tempoBPM(), 120.5);
  EXPECT_EQ((std::vector{kit.level(), kit.fxType(1), kit.fxType(2), kit.fxParam(1, 10), kit.fxParam(2, 10)}),
            (std::vector<std::int64_t>{7, 3, 5, -6, 8}));
  EXPECT_TRUE(kit.isFxOn(1));
  const Kit empty{1, tree("<Kit><Level>loud</Level></Kit>")};
  EXPECT_EQ(empty.level(), 100);
  EXPECT_EQ(empty.tempoBPM(), 120.0);
  EXPECT_EQ(empty.fxParam(2, 10), 0);
  EXPECT_FALSE(empty.isFxOn(1));
}

TEST(Kit, OnlyADifferentPadChangesIt) {
  Kit kit{1, tree("<Kit><X/><PadPrm><Wv>12</Wv></PadPrm></Kit>")};
  const Kit before = kit;
  for (const int index : {-1, 1, std::numeric_limits<int>::max()}) {
    EXPECT_FALSE(kit.pad(index));
    EXPECT_FALSE(kit.writePadWave(index, 205));
    kit.applyPads({{index, tree("<PadPrm>x</PadPrm>")}});
  }
  EXPECT_FALSE(kit.writePadWave(0, 12));
  EXPECT_EQ(kit, before);
  EXPECT_TRUE(kit.writePadNote(0, 60));  // a default that was missing
  EXPECT_TRUE(kit.isDirty);
}

TEST(Kit, AppliedPadsReplaceWholeElementsInListOrder) {
  Kit kit{1, tree("<Kit><PadPrm>a</PadPrm>  <X/><PadPrm>b</PadPrm></Kit>")};
  EXPECT_EQ(kit.padCount(), 2);
  const std::vector<Pad> pads = kit.pads();
  kit.applyPads({{1, pads[0].node}, {0, tree("<PadPrm>c</PadPrm>")}, {0, pads[1].node}, {7, pads[0].node}});
  EXPECT_EQ(bytesOf(kit.node), "<Kit><PadPrm>b</PadPrm>  <X/><PadPrm>a</PadPrm></Kit>");
}

}  // namespace
}  // namespace tamboro
