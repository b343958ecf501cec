#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace tamboro {

/// What a file holds, as a number: XXH3 of its bytes, 64 bits. Equal bytes have equal ones; two contents that meet by
/// chance are not to be expected.
using ContentHash = std::uint64_t;
ContentHash contentHash(std::string_view bytes);

/// What the store knows of the files on the open card: for each parameter file the content that was read or that a save
/// has written, and what a save that failed may have left of its own. A file that stands on the card and isn't known,
/// or holds something else, was put there by somebody else, and a save must not replace it unasked. The wave lists are
/// not among them, nor is audio, but for the places of audio that a failed save has begun.
///
/// 16 bytes a file, a plain value. Paths are relative to the card's root, as `cardpaths` makes them.
class KnownFiles {
 public:
  /// Stands for content that isn't compared.
  static constexpr ContentHash anyContent = 0;

  /// Notes a file while a card is read, in any order and on any thread that has a list of its own.
  void note(const Path& file, ContentHash content);
  /// Adds the notes of another list and sorts; nothing else may be asked before.
  void take(const KnownFiles& other);
  void settle();

  bool isKnown(const Path& file) const;
  bool holds(const Path& file, ContentHash content) const;
  /// A save has put this content there, and nothing else can stand there now.
  void written(const Path& file, ContentHash content);
  /// A save has failed that was to put this content there: from now on it is known beside what was known before.
  void begun(const Path& file, ContentHash content);
  void removed(const Path& file);

  /// Tells one card from another that has no serial number: equal for equal files of equal content.
  std::string fingerprint() const;

 private:
  struct Entry {
    std::uint64_t path;
    ContentHash content;

    friend auto operator<=>(const Entry&, const Entry&) = default;
  };

  std::vector<Entry> entries_;  // ascending once settled; a path can stand there with several contents
};

}  // namespace tamboro
