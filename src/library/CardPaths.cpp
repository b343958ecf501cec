#include "library/CardPaths.h"

#include <charconv>
#include <cstdio>
#include <string>

namespace tamboro::cardpaths {
namespace {

constexpr std::string_view documentExtension = ".spd";

std::string padded(const char* format, std::int64_t number) {
  char digits[32];
  const int length = std::snprintf(digits, sizeof digits, format, static_cast<long long>(number));
  return {digits, static_cast<std::size_t>(length)};
}

// Decimal digits behind a sign or none, and nothing else.
std::optional<std::int64_t> integer(std::string_view text) {
  // from_chars takes a minus but no plus.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stopped, failure] = std::from_chars(text.data(), end, value);
  if (failure != std::errc() || stopped != end) return std::nullopt;
  return value;
}

std::optional<std::int64_t> integerBetween(std::string_view prefix, std::string_view name, std::string_view suffix) {
  if (!name.starts_with(prefix)) return std::nullopt;
  name.remove_prefix(prefix.size());
  if (!name.ends_with(suffix)) return std::nullopt;
  name.remove_suffix(suffix.size());
  return integer(name);
}

}  // namespace

Path kitFolder() {
  return "KIT";
}

Path kitFile(std::int64_t slot) {
  return kitFolder() / ("kit" + padded("%03lld", slot) + ".spd");
}

Path waveFolder() {
  return "WAVE";
}

Path waveParameterRoot() {
  return "WAVE/PRM";
}

Path waveParameterFolder(std::int64_t bank) {
  return waveParameterRoot() / bankFolder(bank);
}

Path waveParameterFile(std::int64_t bank, std::int64_t file) {
  return waveParameterFolder(bank) / (padded("%02lld", file) + ".spd");
}

Path waveDataRoot() {
  return "WAVE/DATA";
}

Path waveDataFolder(std::int64_t bank) {
  return waveDataRoot() / bankFolder(bank);
}

Path systemFolder() {
  return "SYSTEM";
}

Path tagListFile() {
  return systemFolder() / "tag_list.spd";
}

Path nameIndexFile() {
  return systemFolder() / "wavelist_name.spd";
}

Path tagNumberIndexFile() {
  return systemFolder() / "wavelist_tagnum.spd";
}

Path tagNameIndexFile() {
  return systemFolder() / "wavelist_tagname.spd";
}

bool isTemporary(std::string_view name) {
  return name.starts_with(temporaryPrefix);
}

bool isDocument(const Path& file) {
  return file.extension() == documentExtension;
}

std::optional<std::int64_t> slotOfKitFile(std::string_view name) {
  return integerBetween("kit", name, documentExtension);
}

std::optional<std::int64_t> bankOfFolder(std::string_view name) {
  return integer(name);
}

std::optional<std::int64_t> numberOfWaveFile(std::string_view name) {
  return integerBetween("", name, documentExtension);
}

std::optional<Path> audioFile(const Wave& wave) {
  const std::string text = wave.relativeAudioPath();
  if (text.find('\0') != std::string::npos) return std::nullopt;
  // Joined as text: to `operator/` a leading slash would be the root of the computer's disk.
  Path path = Path(waveDataRoot().native() + "/" + text).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();
  const Path root = waveDataRoot();
  auto component = path.begin();
  for (const Path& expected : root) {
    if (component == path.end() || *component != expected) return std::nullopt;
    ++component;
  }
  if (component == path.end()) return std::nullopt;
  return path;
}

std::optional<Path> audioTarget(const Wave& wave) {
  const std::optional<Path> file = audioFile(wave);
  if (!file) return std::nullopt;
  return waveDataFolder(wave.bank) / file->filename();
}

}  // namespace tamboro::cardpaths
