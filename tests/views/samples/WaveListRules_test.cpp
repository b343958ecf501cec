#include "views/samples/WaveListRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "views/samples/BatchRename.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Wave wave(WaveId id, const char* name, std::int64_t tag = 0) {
  return {id / 100, id % 100, newWaveNode(name, tag, "02/a.wav")};
}

TEST(WaveRows, SortByCodePointsAndFilterByTextInAnyCaseAndByTag) {
  WaveRows rows(DottedI::isPlainI);
  // U+FF21 is greater than the first half of U+1D400's surrogate pair, but its code point is smaller.
  rows.read({wave(1, "kick"), wave(2, "Zap"), wave(3, "\U0001D400"), wave(4, "\uFF21"), wave(200, "Zap")});
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(2, 200, 1, 4, 3));
  rows.read({wave(1, "Kick Deep", 0), wave(2, "STRASSE", 1), wave(3, "Ele\u0301ctrico", 1), wave(4, "INTRO", -3)});
  const auto found = [&](const char* text, std::optional<std::int64_t> tag = {}) {
    return rows.filtered(q(text), tag);
  };
  EXPECT_THAT(found("KICK"), ElementsAre(1));
  EXPECT_THAT(found("KICK", 1), IsEmpty());
  EXPECT_THAT(found("", -3), ElementsAre(4)) << "a tag that no list has";
  EXPECT_THAT(found("\u00C9CTR"), ElementsAre(3)) << "one letter, composed or not";
  EXPECT_THAT(found(" "), ElementsAre(1)) << "a blank is looked for as it stands";
  EXPECT_THAT(found("intro"), ElementsAre(4));
  WaveRows turkish(DottedI::isOwnLetter);
  turkish.read({wave(4, "INTRO")});
  EXPECT_THAT(turkish.filtered(q("intro"), {}), IsEmpty()) << "Turkish tells the two letters";
}

TEST(WaveRows, TellWhichRowsAreOther) {
  WaveRows rows(DottedI::isPlainI);
  std::vector<Wave> waves{wave(1, "A"), wave(2, "B"), wave(3, "C")};
  EXPECT_THAT(rows.read(waves), ElementsAre(1, 2, 3));
  waves[1].isDirty = true;
  EXPECT_THAT(rows.read(waves), IsEmpty()) << "not shown";
  waves[1].isPending = true;
  EXPECT_THAT(rows.read(waves), ElementsAre(2));
  elements::waveName.write(waves[0].node, "Z");
  EXPECT_THAT(rows.read(waves), ElementsAre(1));
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(2, 3, 1));
  waves.erase(waves.begin());
  waves.push_back(wave(305, "Aa"));
  EXPECT_THAT(rows.read(waves), ElementsAre(305));
  EXPECT_EQ(rows.find(1), nullptr);
}

TEST(WaveTexts, Texts) {
  const std::pair<std::int64_t, const char*> tags[] = {{0, "Kick"}, {2, "Tag 2"}, {-1, "Tag -1"}};
  for (const auto& [tag, text] : tags)
    EXPECT_EQ(waveTagText({q("Kick"), q("Tag 1")}, tag), q(text));
  const std::pair<std::int64_t, const char*> tempos[] = {{1200, "120.0"}, {1745, "174.5"}, {-5, "-0.5"}};
  for (const auto& [tenths, text] : tempos)
    EXPECT_EQ(waveTempoText(tenths), q(text));
  EXPECT_EQ(waveTempoIn(q("95,5")), 955);
  EXPECT_EQ(waveImportText(11, 300), q("Importing 12 of 300…"));
  EXPECT_EQ(waveImportText(300, 300), q("Importing 300 of 300…"));
  EXPECT_EQ(waveDeleteTitle(q("Kick"), {}), q("Delete \"Kick\"? It isn't used in any kits."));
  EXPECT_EQ(waveDeleteTitle(q("Kick"), {{4, "", 0, false}, {1, "Rock", 14, true}}),
            q("\"Kick\" is used in: Kit 5 – pad 1, Rock – pad 15 (sub). Delete anyway?"));
  EXPECT_EQ(waveAddHelp({}, nullptr, 4), q("Select a kit and a pad first"));
  EXPECT_EQ(waveAddHelp(3, nullptr, 0), q("Assign to pad 1 in Kit 4"));
  WaveRowValues values{.id = 205, .node = {}, .sortKey = "Kick", .foldedName = {}};
  EXPECT_EQ(waveSpokenText(values, q("Snare")), q("Kick, Tag: Snare, 205"));
  values.sortKey.clear();
  values.isPending = true;
  EXPECT_EQ(waveSpokenText(values, q("Snare")), q("Tag: Snare, 205, Not saved to the card yet"));
}

TEST(BatchRename, SortsByPresentNamesAndNumbersFromTheStart) {
  std::vector<Wave> waves;
  for (const auto& [slot, name] : {std::pair{1, "B"}, {2, "A"}, {4, "a"}, {5, "A"}, {6, "x"}})
    waves.push_back({2, slot, newWaveNode(name, 0, "")});
  EXPECT_EQ(renameRows(waves, {205, 204, 202, 201, 999}),
            (std::vector<RenameRow>{{202, "A"}, {205, "A"}, {201, "B"}, {204, "a"}}));
  const RenamePattern pattern{q(" Long snare name "), 9998};
  EXPECT_EQ(pattern.newName(9'999), q(" Long snare name  19997"));
  EXPECT_TRUE(pattern.isUsable());
  EXPECT_FALSE(RenamePattern{q(" \t ")}.isUsable());
}

}  // namespace
}  // namespace tamboro::test
