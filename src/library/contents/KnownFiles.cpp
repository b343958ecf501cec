#include "library/contents/KnownFiles.h"

#include <xxhash.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <type_traits>
#include <utility>

namespace tamboro {

namespace {

std::uint64_t pathHash(const Path& file) {
  return contentHash(file.native());
}

/// The entries of a path, first and end.
template<class Entries>
auto entriesOf(Entries& entries, const Path& file) {
  using Entry = typename std::remove_reference_t<Entries>::value_type;
  const std::uint64_t path = pathHash(file);
  return std::pair(std::ranges::lower_bound(entries, path, {}, &Entry::path),
                   std::ranges::upper_bound(entries, path, {}, &Entry::path));
}

}  // namespace

ContentHash contentHash(std::string_view bytes) {
  return XXH3_64bits(bytes.data(), bytes.size());
}

void KnownFiles::note(const Path& file, ContentHash content) {
  entries_.push_back({pathHash(file), content});
}

void KnownFiles::take(const KnownFiles& other) {
  entries_.insert(entries_.end(), other.entries_.begin(), other.entries_.end());
}

void KnownFiles::settle() {
  std::ranges::sort(entries_);
  entries_.shrink_to_fit();
}

bool KnownFiles::isKnown(const Path& file) const {
  return std::ranges::binary_search(entries_, pathHash(file), {}, &Entry::path);
}

bool KnownFiles::holds(const Path& file, ContentHash content) const {
  const auto [first, end] = entriesOf(entries_, file);
  return std::any_of(first, end, [&](const Entry& entry) { return entry.content == content; });
}

void KnownFiles::begun(const Path& file, ContentHash content) {
  const Entry entry{pathHash(file), content};
  const auto place = std::ranges::lower_bound(entries_, entry);
  if (place == entries_.end() || *place != entry) entries_.insert(place, entry);
}

void KnownFiles::removed(const Path& file) {
  const auto [first, end] = entriesOf(entries_, file);
  entries_.erase(first, end);
}

void KnownFiles::written(const Path& file, ContentHash content) {
  const auto [first, end] = entriesOf(entries_, file);
  if (end - first == 1) {
    first->content = content;
  } else {
    removed(file);
    begun(file, content);
  }
}

std::string KnownFiles::fingerprint() const {
  const auto* const bytes = reinterpret_cast<const char*>(entries_.data());
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "files:%016llx",
                static_cast<unsigned long long>(contentHash({bytes, entries_.size() * sizeof(Entry)})));
  return text.data();
}

}  // namespace tamboro
