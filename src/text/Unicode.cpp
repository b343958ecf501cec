#include "text/Unicode.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace tamboro {
namespace {

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string asciiLowercased(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return result;
}

icu::UnicodeString decoded(std::string_view text) {
  if (text.size() > std::numeric_limits<std::int32_t>::max()) throw std::length_error("Text too long");
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string encoded(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

icu::UnicodeString composed(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) throw std::runtime_error("No normalisation data");
  icu::UnicodeString result = normalizer->normalize(text, status);
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
  return result;
}

}  // namespace

std::string lowercased(std::string_view text) {
  if (isAscii(text)) return asciiLowercased(text);
  return encoded(decoded(text).toLower(icu::Locale::getRoot()));
}

std::string nfc(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  return encoded(composed(decoded(text)));
}

bool canonicallyEquivalent(std::string_view a, std::string_view b) {
  return a == b || nfc(a) == nfc(b);
}

std::string nameSortKey(std::string_view name) {
  if (isAscii(name)) return asciiLowercased(name);
  return encoded(composed(decoded(name).toLower(icu::Locale::getRoot())));
}

DottedI dottedIOfLocale(std::string_view locale) {
  const icu::Locale parsed(std::string(locale).c_str());
  const std::string_view language = parsed.getLanguage();
  return language == "tr" || language == "az" ? DottedI::isOwnLetter : DottedI::isPlainI;
}

std::string searchFold(std::string_view text, DottedI dottedI) {
  if (dottedI == DottedI::isPlainI && isAscii(text)) return asciiLowercased(text);
  // Composed before the fold too: only as one letter does a dotted capital I fold to i.
  icu::UnicodeString folded = composed(decoded(text));
  folded.foldCase(dottedI == DottedI::isOwnLetter ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
  return encoded(composed(folded));
}

std::string fileNameKey(std::string_view name) {
  if (isAscii(name)) return asciiLowercased(name);
  // Drivers compare upper-case forms, which merge letters that a fold keeps apart, such as i and dotless i.
  icu::UnicodeString key = composed(decoded(name)).toUpper(icu::Locale::getRoot());
  key.foldCase();
  return encoded(composed(key));
}

}  // namespace tamboro
