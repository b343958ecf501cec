#pragma once

#include <string>
#include <string_view>

/// Text services on UTF-8. Every function takes any bytes: an ill-formed sequence counts as U+FFFD. All are pure and
/// may be called on any thread.
namespace tamboro {

/// Full lower-case mapping of the Unicode default, final sigma included; no locale takes part.
std::string lowercased(std::string_view text);

/// Normalisation form C.
std::string nfc(std::string_view text);

/// Same text under canonical equivalence.
bool canonicallyEquivalent(std::string_view a, std::string_view b);

/// NFC of the lower-cased name. Keys compare with plain `<` and `==`: the order of UTF-8 bytes is the order of code
/// points, so this is the order in which the card's indexes list names.
std::string nameSortKey(std::string_view name);

enum class DottedI { isPlainI, isOwnLetter };

/// How a locale named as in "tr_TR" or "tr-TR" folds I: Turkish and Azeri know a dotted and a dotless letter.
DottedI dottedIOfLocale(std::string_view locale);

/// NFC of the case fold: what a case-insensitive search compares. Make it once per row and once per search text.
std::string searchFold(std::string_view text, DottedI dottedI);

/// Equal keys: a FAT volume may hold only one of the two file names. Case and canonical form don't count; where file
/// system drivers differ (ß, ligatures, dotless i) names count as equal: what is free here is free everywhere.
std::string fileNameKey(std::string_view name);

}  // namespace tamboro
