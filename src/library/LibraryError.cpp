#include "library/LibraryError.h"

#include "card/SpdParseError.h"
#include "library/CardConflict.h"

namespace tamboro {

const char* LibraryError::what() const noexcept {
  switch (case_) {
    case Case::rootNotFound:
      return "Couldn't find the KIT/WAVE/SYSTEM folders at the chosen location. Select the SPD-SX volume or the "
             "Roland/SPD-SX folder directly.";
    case Case::notLoaded:
      return "No SPD-SX folder has been loaded yet.";
    case Case::noFreeSlot:
      return "No free sample slots on the card (every bank folder is full).";
  }
  return "";
}

namespace {

/// What a musician can do about it; the system's own words follow.
QString adviceOn(const FileError& error) {
  if (dynamic_cast<const OtherCard*>(&error)) {
    return QStringLiteral("Another card is in the place of the one that was opened. ");
  }
  const std::error_code& code = error.code();
  if (code == std::errc::no_space_on_device) return QStringLiteral("There is too little room. ");
  if (code == std::errc::read_only_file_system)
    return QStringLiteral(
        "The card or disk can't be written to: it is locked, or has to be checked for errors first. ");
  if (code == std::errc::io_error || code == std::errc::no_such_device || code == std::errc::no_such_device_or_address)
    return QStringLiteral("The card or disk doesn't answer as it should: is it still plugged in? ");
  if (code == std::errc::no_such_file_or_directory)
    return QStringLiteral("What was looked for isn't there: has the card been unplugged, or a file been moved? ");
  if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted)
    return QStringLiteral("This program isn't allowed to do that there. ");
  return {};
}

}  // namespace

bool isForRoom(const std::exception_ptr& error) {
  try {
    if (error) std::rethrow_exception(error);
  } catch (const FileError& failure) {
    return failure.code() == std::errc::no_space_on_device;
  } catch (...) {
  }
  return false;
}

QString errorText(const std::exception_ptr& error) {
  if (!error) return {};
  try {
    std::rethrow_exception(error);
  } catch (const FileError& failure) {
    return adviceOn(failure) + QString::fromUtf8(failure.what());
  } catch (const SpdParseError& failure) {
    return QString::fromStdString(failure.text());
  } catch (const std::exception& failure) {
    return QString::fromUtf8(failure.what());
  }
}

}  // namespace tamboro
