#include "views/samples/WaveListRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Wave wave(WaveId id, const char* name, std::int64_t tag = 0) {
  return {id / 100, id % 100, newWaveNode(name, tag, "02/a.wav")};
}

TEST(WaveRows, SortByCodePointsAndTellWhichRowsAreOther) {
  WaveRows rows(DottedI::isPlainI);
  // U+FF21 is greater than the first half of U+1D400's surrogate pair, but its code point is smaller.
  std::vector<Wave> waves{wave(1, "kick"), wave(2, "Zap"), wave(3, "\U0001D400"), wave(4, "\uFF21"), wave(200, "Zap")};
  EXPECT_THAT(rows.read(waves), ElementsAre(1, 2, 3, 4, 200));
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(2, 200, 1, 4, 3));
  waves[1].isDirty = true;
  EXPECT_THAT(rows.read(waves), IsEmpty()) << "not shown";
  waves[1].isPending = true;
  elements::waveName.write(waves[0].node, "A");
  EXPECT_THAT(rows.read(waves), ElementsAre(1, 2));
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(1, 2, 200, 4, 3));
  waves.erase(waves.begin());
  EXPECT_THAT(rows.read(waves), IsEmpty());
  EXPECT_EQ(rows.find(1), nullptr);
}

TEST(WaveTexts, Texts) {
  const std::pair<QString, const char*> texts[] = {
      {waveTagText({q("Kick")}, 2), "Tag 2"},
      {waveTagText({q("Kick")}, -1), "Tag -1"},
      {waveTempoText(1745), "174.5"},
      {waveTempoText(-5), "-0.5"},
      {waveImportText(300, 300), "Importing 300 of 300…"},
      {waveDeleteTitle(q("Kick"), {}), "Delete \"Kick\"? It isn't used in any kits."},
      {waveDeleteTitle(q("Kick"), {{4, "", 0, false}, {1, "Rock", 14, true}}),
       "\"Kick\" is used in: Kit 5 – pad 1, Rock – pad 15 (sub). Delete anyway?"},
      {waveAddHelp({}, nullptr, 4), "Select a kit and a pad first"},
      {waveAddHelp(3, nullptr, 0), "Assign to pad 1 in Kit 4"},
      {waveSpokenText({.id = 205, .node = {}, .sortKey = {}, .foldedName = {}, .isPending = true}, q("Snare")),
       "Tag: Snare, 205, Not saved to the card yet"}};
  for (const auto& [text, expected] : texts)
    EXPECT_EQ(text, q(expected));
  EXPECT_EQ(waveTempoIn(q("95,5")), 955);
}

}  // namespace
}  // namespace tamboro::test
