#include "library/LibraryError.h"

#include "card/SpdParseError.h"

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

QString errorText(const std::exception_ptr& error) {
  if (!error) return {};
  try {
    std::rethrow_exception(error);
  } catch (const SpdParseError& failure) {
    return QString::fromStdString(failure.text());
  } catch (const std::exception& failure) {
    return QString::fromUtf8(failure.what());
  }
}

}  // namespace tamboro
