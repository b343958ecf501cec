#pragma once

#include <QString>
#include <exception>

namespace tamboro {

/// The store's own failures; `what` is the text the user reads (UTF-8).
class LibraryError : public std::exception {
 public:
  enum class Case { rootNotFound, notLoaded, noFreeSlot };

  explicit LibraryError(Case which) : case_(which) {}
  Case which() const { return case_; }
  const char* what() const noexcept override;

 private:
  Case case_;
};

/// As a completion is told of it.
inline std::exception_ptr libraryError(LibraryError::Case which) {
  return std::make_exception_ptr(LibraryError(which));
}

/// Whether an operation failed for want of room.
bool isForRoom(const std::exception_ptr& error);
/// What the user reads of a failed load, save, import or export: the error's own description; a sentence on what to do
/// stands before the system's words.
QString errorText(const std::exception_ptr& error);

}  // namespace tamboro
