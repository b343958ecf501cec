#include "library/CardPaths.h"

#include <gtest/gtest.h>

#include <limits>

namespace tamboro {
namespace {

using Integer = std::optional<std::int64_t>;
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

TEST(CardPaths, PadNumbersAndNeverCutThem) {
  EXPECT_EQ(cardpaths::kitFile(7), "KIT/kit007.spd");
  EXPECT_EQ(cardpaths::kitFile(12345), "KIT/kit12345.spd");
  EXPECT_EQ(cardpaths::kitFile(-1), "KIT/kit-01.spd");
  EXPECT_EQ(cardpaths::waveParameterFile(2, 5), "WAVE/PRM/02/05.spd");
  EXPECT_EQ(cardpaths::waveParameterFile(least, least), "WAVE/PRM/-9223372036854775808/-9223372036854775808.spd");
  EXPECT_EQ(cardpaths::waveDataFolder(123), "WAVE/DATA/123");
}

TEST(CardPaths, ReadNamesAsNumbers) {
  const struct {
    std::string_view name;
    Integer slot;
  } kits[] = {{"kit001.spd", 1},
              {"kit7.spd", 7},
              {"kit+7.spd", 7},
              {"kit-7.spd", -7},
              {"kit9223372036854775807.spd", std::numeric_limits<std::int64_t>::max()},
              {"kit9223372036854775808.spd", {}},
              {"kit-9223372036854775808.spd", least},
              {"kit.spd", {}},
              {"kit+.spd", {}},
              {"kit+-7.spd", {}},
              {"kit 7.spd", {}},
              {"kit7 .spd", {}},
              {"kit7.0.spd", {}},
              {"kit0x7.spd", {}},
              {"kitABC.spd", {}},
              {"KIT001.spd", {}},
              {"kit001.SPD", {}},
              {"kit001", {}},
              {"kit001.spd.", {}},
              {".spd", {}}};
  for (const auto& [name, slot] : kits)
    EXPECT_EQ(cardpaths::slotOfKitFile(name), slot) << name;
  EXPECT_EQ(cardpaths::bankOfFolder("002"), Integer(2));
  EXPECT_EQ(cardpaths::bankOfFolder("2a"), Integer());
  EXPECT_EQ(cardpaths::numberOfWaveFile("05.spd"), Integer(5));
  EXPECT_EQ(cardpaths::numberOfWaveFile("notes.spd"), Integer());
  EXPECT_EQ(cardpaths::numberOfWaveFile(".spd"), Integer());
}

TEST(CardPaths, AudioStaysBelowItsFolder) {
  using namespace std::string_view_literals;
  const struct {
    std::string_view text;
    const char* file;
    const char* target;
  } cases[] = {{"02/kick.wav", "WAVE/DATA/02/kick.wav", "WAVE/DATA/05/kick.wav"},
               {"/02/kick.wav", "WAVE/DATA/02/kick.wav", "WAVE/DATA/05/kick.wav"},
               {"02//./x/../kick.wav/", "WAVE/DATA/02/kick.wav", "WAVE/DATA/05/kick.wav"},
               {"kick.wav", "WAVE/DATA/kick.wav", "WAVE/DATA/05/kick.wav"},
               {"../DATA/02/a", "WAVE/DATA/02/a", "WAVE/DATA/05/a"},
               {"", nullptr, nullptr},
               {"/", nullptr, nullptr},
               {".", nullptr, nullptr},
               {"..", nullptr, nullptr},
               {"02/..", nullptr, nullptr},
               {"../PRM/02/05.spd", nullptr, nullptr},
               {"../DATAX/a", nullptr, nullptr},
               {"../../KIT/kit001.spd", nullptr, nullptr},
               {"../../../WAVE/DATA/a", nullptr, nullptr},
               {"../../../../../../etc/passwd", nullptr, nullptr},
               {"02/a\0b.wav"sv, nullptr, nullptr}};
  for (const auto& [text, file, target] : cases) {
    const Wave wave{5, 0, SpdNode::container("WvPrm", {SpdNode::leaf("Path", text)})};
    ASSERT_EQ(wave.relativeAudioPath(), text);
    EXPECT_EQ(cardpaths::audioFile(wave), file ? std::optional<Path>(file) : std::nullopt) << text;
    EXPECT_EQ(cardpaths::audioTarget(wave), target ? std::optional<Path>(target) : std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tamboro
