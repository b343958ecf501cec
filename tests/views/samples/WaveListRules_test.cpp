#include "views/samples/WaveListRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tamboro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString q(const char* text) {
  return QString::fromUtf8(text);
}

Wave wave(WaveId id, const char* name, std::int64_t tag = 0) {
  return {id / 100, id % 100, newWaveNode(name, tag, "02/a.wav")};
}

TEST(WaveRows, SortByCodePointsAndKeepTheOrderOfIdsForEqualNames) {
  WaveRows rows(DottedI::isPlainI);
  // U+FF21 is greater than the first half of U+1D400's surrogate pair, but its code point is smaller.
  rows.read({wave(1, "kick"), wave(2, "Zap"), wave(3, "\U0001D400"), wave(4, "\uFF21"), wave(5, ""), wave(200, "Zap"),
             wave(201, "\u00C9")});
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(5, 2, 200, 1, 201, 4, 3));
}

TEST(WaveRows, FilterByTextInAnyCaseAndByTag) {
  WaveRows rows(DottedI::isPlainI);
  rows.read({wave(1, "Kick Deep", 0), wave(2, "STRASSE", 1), wave(3, "Ele\u0301ctrico", 1), wave(4, "kick", -3)});
  const auto found = [&](const char* text, std::optional<std::int64_t> tag = {}) {
    return rows.filtered(q(text), tag);
  };
  EXPECT_THAT(found("KICK"), ElementsAre(1, 4));
  EXPECT_THAT(found("KICK", 0), ElementsAre(1));
  EXPECT_THAT(found("", 1), ElementsAre(3, 2));
  EXPECT_THAT(found("", -3), ElementsAre(4)) << "a tag that no list has";
  EXPECT_THAT(found("straße"), ElementsAre(2));
  EXPECT_THAT(found("\u00C9CTR"), ElementsAre(3)) << "one letter, composed or not";
  EXPECT_THAT(found(" "), ElementsAre(1)) << "a blank is looked for as it stands";
}

TEST(WaveRows, TurkishTellsTheTwoLettersI) {
  for (const auto& [dottedI, isFound] : {std::pair(DottedI::isPlainI, true), std::pair(DottedI::isOwnLetter, false)}) {
    WaveRows rows(dottedI);
    rows.read({wave(1, "INTRO")});
    EXPECT_EQ(rows.filtered(q("intro"), {}).size(), isFound ? 1U : 0U);
    EXPECT_EQ(rows.filtered(q("\u0131ntro"), {}).size(), isFound ? 0U : 1U);
  }
}

TEST(WaveRows, TellWhichRowsAreOther) {
  WaveRows rows(DottedI::isPlainI);
  std::vector<Wave> waves{wave(1, "A"), wave(2, "B"), wave(3, "C")};
  EXPECT_THAT(rows.read(waves), ElementsAre(1, 2, 3));
  EXPECT_THAT(rows.read(waves), IsEmpty());
  waves[1].isDirty = true;
  EXPECT_THAT(rows.read(waves), IsEmpty()) << "not shown";
  waves[1].isPending = true;
  EXPECT_THAT(rows.read(waves), ElementsAre(2));
  EXPECT_TRUE(rows.find(2)->isPending);
  elements::waveName.write(waves[0].node, "Z");
  EXPECT_THAT(rows.read(waves), ElementsAre(1));
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(2, 3, 1));
  waves.erase(waves.begin());
  waves.push_back(wave(305, "Aa"));
  EXPECT_THAT(rows.read(waves), ElementsAre(305));
  EXPECT_THAT(rows.filtered({}, {}), ElementsAre(305, 2, 3));
  EXPECT_EQ(rows.find(1), nullptr);
}

TEST(WaveSelection, AdditionsKeepWhatIsHidden) {
  const std::set<WaveId> before{1, 2, 99};
  EXPECT_THAT(waveSelection(before, {3, 2, 1}, {1, 3}, true), ElementsAre(1, 3, 99));
  EXPECT_THAT(waveSelection(before, {3, 2, 1}, {3}, false), ElementsAre(3));
}

TEST(WaveTexts, TagsAndNumbers) {
  const std::vector<QString> titles{q("Kick"), q("Tag 1")};
  const std::pair<std::int64_t, const char*> tags[] = {{0, "Kick"}, {1, "Tag 1"}, {2, "Tag 2"}, {-1, "Tag -1"}};
  for (const auto& [tag, text] : tags)
    EXPECT_EQ(waveTagText(titles, tag), q(text));
  EXPECT_EQ(waveNumberText(12), q("[12]"));
  const std::pair<std::int64_t, const char*> tempos[] = {{1200, "120.0"}, {150, "15.0"}, {1745, "174.5"}, {-5, "-0.5"}};
  for (const auto& [tenths, text] : tempos)
    EXPECT_EQ(waveTempoText(tenths), q(text));
  EXPECT_EQ(waveCountText(7, 0), q("7 sounds"));
  EXPECT_EQ(waveCountText(7, 1), q("7 sounds"));
  EXPECT_EQ(waveCountText(0, 2), q("2 selected"));
  EXPECT_EQ(waveImportText(11, 300), q("Importing 12 of 300…"));
  EXPECT_EQ(waveImportText(300, 300), q("Importing 300 of 300…"));
}

TEST(WaveTexts, DeleteTitleNamesEveryUse) {
  EXPECT_EQ(waveDeleteTitle(q("Kick"), {}), q("Delete \"Kick\"? It isn't used in any kits."));
  EXPECT_EQ(waveDeleteTitle(q("Kick"), {{4, "", 0, false}, {1, "Rock", 14, false}, {1, "Rock", 14, true}}),
            q("\"Kick\" is used in: Kit 5 – pad 1, Rock – pad 15, Rock – pad 15 (sub). Delete anyway?"));
}

TEST(WaveTexts, AddHelpNamesPadAndKit) {
  Kit kit{};
  elements::kitName.write(kit.node, "808 Trap");
  EXPECT_EQ(waveAddHelp({}, nullptr, 4), q("Select a kit and a pad first"));
  EXPECT_EQ(waveAddHelp(3, &kit, 4), q("Assign to pad 5 in 808 Trap"));
  EXPECT_EQ(waveAddHelp(3, nullptr, 0), q("Assign to pad 1 in Kit 4"));
}

TEST(WaveTexts, SpokenRow) {
  WaveRowValues values{.id = 205, .node = {}, .sortKey = "Kick", .foldedName = {}};
  EXPECT_EQ(waveSpokenText(values, q("Snare")), q("Kick, Tag: Snare, 205"));
  values.sortKey.clear();
  values.isPending = true;
  EXPECT_EQ(waveSpokenText(values, q("Snare")), q("Tag: Snare, 205, Not saved to the card yet"));
}

}  // namespace
}  // namespace tamboro::test
