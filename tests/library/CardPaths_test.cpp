#include "library/CardPaths.h"

#include <gtest/gtest.h>

#include <limits>

namespace tamboro {
namespace {

TEST(CardPaths, ReadAndWriteNumbersThatFitAndNoOthers) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(cardpaths::kitFile(12345), "KIT/kit12345.spd");
  EXPECT_EQ(cardpaths::waveParameterFile(least, least), "WAVE/PRM/-9223372036854775808/-9223372036854775808.spd");
  EXPECT_EQ(cardpaths::slotOfKitFile("kit-7.spd"), -7);
  for (const char* name : {"kit9223372036854775808.spd", "kit+.spd", "kit+-7.spd", "kit7 .spd", "kit7.0.spd",
                           "kit0x7.spd", "KIT001.spd", "kit001.SPD", "kit001", ".spd"})
    EXPECT_EQ(cardpaths::slotOfKitFile(name), std::nullopt) << name;
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
               {"../DATA/02/a", "WAVE/DATA/02/a", "WAVE/DATA/05/a"},
               {"", nullptr, nullptr},
               {"/", nullptr, nullptr},
               {"02/..", nullptr, nullptr},
               {"../PRM/02/05.spd", nullptr, nullptr},
               {"../DATAX/a", nullptr, nullptr},
               {"../../../WAVE/DATA/a", nullptr, nullptr},
               {"../../../../../../etc/passwd", nullptr, nullptr},
               {"02/a\0b.wav"sv, nullptr, nullptr}};
  for (const auto& [text, file, target] : cases) {
    const Wave wave{5, 0, SpdNode::container("WvPrm", {SpdNode::leaf("Path", text)})};
    EXPECT_EQ(cardpaths::audioFile(wave), file ? std::optional<Path>(file) : std::nullopt) << text;
    EXPECT_EQ(cardpaths::audioTarget(wave), target ? std::optional<Path>(target) : std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tamboro
