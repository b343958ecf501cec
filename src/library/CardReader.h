#pragma once

#include "library/SaveSnapshot.h"

namespace tamboro {

/// A whole card as read: records in ascending order of their keys, each with its document.
struct CardContent {
  std::vector<Kit> kits;
  std::vector<Wave> waves;
  KitDocs kitDocs;
  WaveDocs waveDocs;
  SpdDocument tagListDoc;
};

/// Reads every parameter file of a card once; audio and the wave lists are not opened. A folder that can't be listed
/// counts as empty, a file whose name doesn't fit is passed over; a file that can't be read or parsed throws FileError
/// or SpdParseError. Where several files read as one key, the one under the name that a save writes comes first and
/// gives the document: an edit of the record must not bring another file's content under that name.
CardContent readCard(const FileSystem& card);

}  // namespace tamboro
