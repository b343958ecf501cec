#pragma once

#include <cstdint>

#include "platform/FileSystem.h"

namespace tamboro {

/// What earlier saves that were cut off have left on a card: temporary folders in its root and empty placeholders in
/// the folders that names were to come into.
struct Leftovers {
  std::size_t count = 0;    ///< folders and files, what is in the folders not counted
  std::uint64_t bytes = 0;  ///< in the folders' files, as their entries tell it

  friend bool operator==(const Leftovers&, const Leftovers&) = default;
};

/// Looks for them and changes nothing: after a cut, clusters of theirs can belong to files that are in place, and only
/// a check of the whole file system knows. `card` is rooted in the card. The other folders are looked through only
/// where the root has a leftover: a save makes its folder there first and removes it last. What can't be read isn't
/// counted.
Leftovers findLeftovers(const FileSystem& card);

}  // namespace tamboro
