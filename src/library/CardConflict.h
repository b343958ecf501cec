#pragma once

#include <cstddef>
#include <exception>
#include <string>

#include "platform/FileSystem.h"

namespace tamboro {

/// What is mounted at the card's place is another card.
class OtherCard : public FileError {
 public:
  using FileError::FileError;
};

/// The card isn't as the store takes it to be, and what was asked for would cost files that aren't ours to replace.
/// Thrown before anything is changed; `what` is the text the user reads (UTF-8).
class CardConflict : public std::exception {
 public:
  enum class Kind {
    changedSinceRead,  ///< files that a save was to replace or remove hold something else than what was read
    unreadFile,        ///< a file stands where a save was to put a new one
    leadsOutside       ///< a folder of the card is a link to a place that isn't on it
  };

  static CardConflict changedSinceRead(std::size_t files);
  static CardConflict unreadFile(const Path& file);
  static CardConflict leadsOutside(const Path& folder);

  Kind kind() const { return kind_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  CardConflict(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}

  Kind kind_;
  std::string text_;
};

/// Whether an operation failed because others have changed what it was to replace: then the user can choose.
bool isChangedSinceRead(const std::exception_ptr& error);

}  // namespace tamboro
