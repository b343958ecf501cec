#include "text/Unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tamboro {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(Unicode, LowerCaseIsTheFullMappingOfNoLocale) {
  const Pairs cases = {
      {"KICK 10 [@`{", "kick 10 [@`{"},
      {"ΟΔΟΣ ΣΑΣ", "οδος σας"},                 // final sigma at each word's end
      {"Iİẞﬁ", "ii\u0307ßﬁ"},                   // a dot stays, whatever the user's locale, and nothing is unfolded
      {"\U00010400A\xFF", "\U00010428a\uFFFD"}  // beyond the basic plane; ill-formed
  };
  for (const auto& [from, to] : cases)
    EXPECT_EQ(lowercased(from), to);
}

TEST(Unicode, EquivalenceIgnoresTheFormAndNotTheCase) {
  EXPECT_EQ(nfc("e\u0301 A\u030A \u212B ﬁ"), "é Å Å ﬁ");
  EXPECT_TRUE(canonicallyEquivalent("e\u0301", "é"));
  EXPECT_FALSE(canonicallyEquivalent("E\u0301", "é"));
}

TEST(Unicode, SearchFoldsIgnoreCaseAndForm) {
  for (const auto& [a, b] : Pairs{{"SNARE I", "snare i"}, {"Straße", "STRASSE"}, {"ΟΔΟΣ", "οδος"}, {"E\u0301", "é"}})
    EXPECT_EQ(searchFold(a, DottedI::isPlainI), searchFold(b, DottedI::isPlainI)) << a;
  EXPECT_NE(searchFold("ı", DottedI::isPlainI), searchFold("I", DottedI::isPlainI));
  for (const auto& [from, to] : Pairs{{"KICK Iı", "kıck ıı"}, {"İ", "i"}, {"I\u0307", "i"}})
    EXPECT_EQ(searchFold(from, DottedI::isOwnLetter), to);
}

TEST(Unicode, TurkishAndAzeriKnowADotlessI) {
  for (const char* locale : {"tr", "tr_TR.UTF-8", "az-Latn-AZ"})
    EXPECT_EQ(dottedIOfLocale(locale), DottedI::isOwnLetter) << locale;
  for (const char* locale : {"", "C", "de-DE", "trv"})
    EXPECT_EQ(dottedIOfLocale(locale), DottedI::isPlainI) << locale;
}

TEST(Unicode, FileNameKeysMergeWhatAFatVolumeMayMerge) {
  for (const auto& [a, b] :
       Pairs{{"Kick.WAV", "kick.wav"}, {"É", "e\u0301"}, {"Maß", "MASS"}, {"ı", "I"}, {"ſ", "s"}, {"ς", "Σ"}})
    EXPECT_EQ(fileNameKey(a), fileNameKey(b)) << a;
  EXPECT_NE(fileNameKey("e.wav"), fileNameKey("é.wav"));
}

}  // namespace
}  // namespace tamboro
