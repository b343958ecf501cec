#include "library/CardConflict.h"

#include <QString>
#include <utility>

namespace tamboro {

namespace {

/// Names on a card are bytes; what isn't UTF-8 among them is shown by a sign for it.
std::string shown(const Path& path) {
  return QString::fromUtf8(QByteArray::fromStdString(path.native())).toStdString();
}

}  // namespace

CardConflict CardConflict::changedSinceRead(std::size_t files) {
  return {Kind::changedSinceRead, "The instrument or another program has changed " + std::to_string(files) +
                                      (files == 1 ? " file" : " files") + " since the card was read."};
}

CardConflict CardConflict::unreadFile(const Path& file) {
  return {Kind::unreadFile,
          "The card has a file that wasn't there when it was read, and a new one of yours would take "
          "its place: " +
              shown(file) +
              ". Nothing was saved. Move that file to another place, then save again; or open the "
              "card again, which drops your unsaved changes."};
}

bool isChangedSinceRead(const std::exception_ptr& error) {
  if (!error) return false;
  try {
    std::rethrow_exception(error);
  } catch (const CardConflict& conflict) {
    return conflict.kind() == CardConflict::Kind::changedSinceRead;
  } catch (...) {
    return false;
  }
}

CardConflict CardConflict::leadsOutside(const Path& folder) {
  return {Kind::leadsOutside, "The folder " + shown(folder) +
                                  " of this card is a link to a place outside of it. A save would change files there, "
                                  "so the card isn't opened. Copy the linked folder into the card first."};
}

}  // namespace tamboro
