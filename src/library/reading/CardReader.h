#pragma once

#include "card/SpdParseError.h"
#include "library/contents/CardContent.h"

namespace tamboro {

/// A parameter file that is no document; `what` is the parser's text.
class DamagedFile : public SpdParseError {
 public:
  DamagedFile(const SpdParseError& error, Path file) : SpdParseError(error), file_(std::move(file)) {}
  const Path& file() const { return file_; }

 private:
  Path file_;  // relative to the root
};

/// Reads every parameter file of a card once; audio and the wave lists are not opened. A folder that isn't there counts
/// as empty, one that can't be listed doesn't: a later save would take its names for free. A file whose name doesn't
/// fit is passed over; one that can't be read or parsed throws FileError or DamagedFile. Where several files read as
/// one key, the one under the name that a save writes comes first and gives the document: an edit of the record must
/// not bring another file's content under that name.
CardContent readCard(const FileSystem& card);

}  // namespace tamboro
