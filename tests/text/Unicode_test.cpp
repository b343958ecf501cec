#include "text/Unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tamboro {
namespace {

struct Mapping {
  std::string from;
  std::string to;
};

TEST(Unicode, LowerCaseIsTheFullMappingOfNoLocale) {
  const std::vector<Mapping> cases = {
      {"KICK 10 [@`{", "kick 10 [@`{"},
      {"ÄÖÜẞ", "äöüß"},
      {"ΟΔΟΣ ΣΑΣ", "οδος σας"},        // final sigma at each word's end
      {"Iİ", "ii\u0307"},              // dotted capital I keeps its dot, whatever the user's locale
      {"\U00010400", "\U00010428"},    // beyond the basic plane
      {"ﬁ", "ﬁ"},                      // ligatures aren't unfolded
      {"A\xFF\xC3", "a\uFFFD\uFFFD"},  // ill-formed bytes
  };
  for (const auto& [from, to] : cases)
    EXPECT_EQ(lowercased(from), to) << from;
}

TEST(Unicode, NfcComposesAndEquivalenceIgnoresTheForm) {
  EXPECT_EQ(nfc("e\u0301 A\u030A \u212B"), "é Å Å");
  EXPECT_EQ(nfc("ﬁ"), "ﬁ");
  EXPECT_TRUE(canonicallyEquivalent("e\u0301", "é"));
  EXPECT_FALSE(canonicallyEquivalent("e", "é"));
  EXPECT_FALSE(canonicallyEquivalent("E\u0301", "é"));
}

TEST(Unicode, NameSortKeysOrderByCodePoint) {
  // A q with an accent has no composed form and stays a q; a composed é stands behind all of ASCII.
  const std::vector<std::string> ascending = {"",   " ", "  ",      "1",       "a10",    "A2",
                                              "ab", "B", "q\u0301", "e\u0301", "\uFB01", "\U0001F941"};
  std::vector<std::string> names(ascending.rbegin(), ascending.rend());
  std::ranges::sort(names, {}, nameSortKey);
  EXPECT_EQ(names, ascending);
  EXPECT_EQ(nameSortKey("E\u0301"), nameSortKey("é"));
}

TEST(Unicode, SearchFoldsIgnoreCaseAndForm) {
  const auto plain = [](const std::string& text) { return searchFold(text, DottedI::isPlainI); };
  const auto turkish = [](const std::string& text) { return searchFold(text, DottedI::isOwnLetter); };
  EXPECT_EQ(plain("SNARE I"), "snare i");
  EXPECT_EQ(plain("Straße"), plain("STRASSE"));
  EXPECT_EQ(plain("ΟΔΟΣ"), plain("οδος"));
  EXPECT_EQ(plain("E\u0301"), "é");
  EXPECT_NE(plain("ı"), plain("I"));
  EXPECT_EQ(turkish("KICK Iı"), "kıck ıı");
  EXPECT_EQ(turkish("İ"), "i");
  EXPECT_EQ(turkish("I\u0307"), "i");
  EXPECT_EQ(plain("\x80\xE2\x82"), "\uFFFD\uFFFD");
}

TEST(Unicode, TurkishAndAzeriKnowADotlessI) {
  for (const char* locale : {"tr", "tr_TR", "tr-TR", "tr_TR.UTF-8", "az_AZ", "az-Latn-AZ"}) {
    EXPECT_EQ(dottedIOfLocale(locale), DottedI::isOwnLetter) << locale;
  }
  for (const char* locale : {"", "C", "en_US", "de-DE", "trv", "\xFF"}) {
    EXPECT_EQ(dottedIOfLocale(locale), DottedI::isPlainI) << locale;
  }
}

TEST(Unicode, FileNameKeysMergeWhatAFatVolumeMayMerge) {
  const std::vector<Mapping> clashes = {
      {"Kick.WAV", "kick.wav"}, {"É.wav", "e\u0301.wav"}, {"Maß", "MASS"}, {"ı", "I"}, {"ſ", "s"}, {"ς", "Σ"}};
  for (const auto& [a, b] : clashes)
    EXPECT_EQ(fileNameKey(a), fileNameKey(b)) << a;
  EXPECT_NE(fileNameKey("e.wav"), fileNameKey("é.wav"));
  EXPECT_NE(fileNameKey("kick.wav"), fileNameKey("kick_01.wav"));
}

}  // namespace
}  // namespace tamboro
