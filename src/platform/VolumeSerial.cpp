#include "platform/VolumeSerial.h"

#if defined(__linux__)
#include <dirent.h>
#include <fcntl.h>
#include <linux/msdos_fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#endif

namespace tamboro {

#if defined(__linux__)

namespace {

/// The serial in a FAT volume's boot sector. A zero was never set, so it tells no two cards apart.
std::string fatSerial(int descriptor) {
  unsigned serial = 0;
  if (::ioctl(descriptor, FAT_IOCTL_GET_VOLUME_ID, &serial) != 0 || serial == 0) return {};
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "fat:%04X-%04X", serial >> 16U, serial & 0xFFFFU);
  return text.data();
}

/// The name under which the device manager lists the block device by its volume's own number.
std::string listedUuid(dev_t device) {
  DIR* folder = ::opendir("/dev/disk/by-uuid");
  if (folder == nullptr) return {};
  std::string found;
  while (const dirent* entry = ::readdir(folder)) {
    struct stat status {};
    if (::fstatat(::dirfd(folder), entry->d_name, &status, 0) == 0 && S_ISBLK(status.st_mode) &&
        status.st_rdev == device) {
      found = std::string("uuid:") + entry->d_name;
      break;
    }
  }
  ::closedir(folder);
  return found;
}

}  // namespace

std::string serialOfVolume(int descriptor, dev_t device) {
  std::string serial = fatSerial(descriptor);
  return serial.empty() ? listedUuid(device) : serial;
}

#else

std::string serialOfVolume(int, dev_t) {
  return {};
}

#endif

}  // namespace tamboro
