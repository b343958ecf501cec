#include "power_cut/FatVolume.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace tamboro::powercut {
namespace {

constexpr std::size_t slotSize = 32;
constexpr std::size_t foldersRemembered = 200'000;

std::uint64_t hashOf(const unsigned char* bytes, std::size_t size) {
  return XXH3_64bits(bytes, size);
}

std::uint64_t combined(std::uint64_t a, std::uint64_t b) {
  return (a ^ (b + 0x9E3779B97F4A7C15U)) * 0xBF58476D1CE4E5B9U + (a >> 29U);
}

std::uint32_t number(const unsigned char* bytes, int size) {
  std::uint32_t value = 0;
  for (int i = size - 1; i >= 0; --i)
    value = value << 8U | bytes[i];
  return value;
}

char capital(unsigned code) {
  if (code > 0x7F) return '?';
  const char c = static_cast<char>(code);
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string shortName(const unsigned char* slot) {
  const auto part = [&](int from, int to) {
    std::string text;
    for (int i = from; i < to; ++i)
      text += capital(slot[i]);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  };
  const std::string extension = part(8, 11);
  return extension.empty() ? part(0, 8) : part(0, 8) + "." + extension;
}

// The long name, or nothing where its slots don't belong to the short one.
std::string joinedName(const std::vector<const unsigned char*>& slots, const unsigned char* shortSlot) {
  unsigned checksum = 0;
  for (int i = 0; i < 11; ++i)
    checksum = ((checksum >> 1U | checksum << 7U) + shortSlot[i]) & 0xFFU;
  if (slots.empty() || (slots.front()[0] & 0x40U) == 0) return {};
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if ((slots[i][0] & 0x3FU) != slots.size() - i || slots[i][13] != checksum) return {};
  }
  constexpr std::array<int, 13> places = {1, 3, 5, 7, 9, 14, 16, 18, 20, 22, 24, 28, 30};
  std::string name;
  for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot) {
    for (const int place : places) {
      const std::uint32_t code = number(*slot + place, 2);
      if (code == 0) return name;
      name += capital(code);
    }
  }
  return name;
}

// `own`: the folder's first cluster where it has the entries "." and "..".
FatVolume::Folder parse(const Bytes& table, bool isWide, std::uint32_t own) {
  auto entries = std::make_shared<std::vector<Entry>>();
  std::vector<const unsigned char*> longName;
  bool stops = false;
  for (std::size_t at = 0; at + slotSize <= table.size(); at += slotSize) {
    const unsigned char* const slot = table.data() + at;
    const unsigned attributes = slot[11];
    if (slot[0] == 0 || slot[0] == 0xE5) {
      stops = stops || slot[0] == 0;
      longName.clear();
    } else if ((attributes & 0x3FU) == 0x0F) {
      if ((slot[0] & 0x40U) != 0) longName.clear();
      longName.push_back(slot);
    } else if ((attributes & 0x08U) != 0) {
      longName.clear();
    } else {
      const std::uint32_t start = number(slot + 26, 2) | (isWide ? number(slot + 20, 2) << 16U : 0);
      const bool isSelf = own != 0 && start == own && std::memcmp(slot, ".          ", 11) == 0;
      const std::string name = joinedName(longName, slot);
      if (!isSelf) {
        entries->push_back({name.empty() ? shortName(slot) : name, (attributes & 0x10U) != 0, start,
                            number(slot + 28, 4), stops, name.empty()});
      }
      longName.clear();
    }
  }
  const bool isWhole = own == 0 || (table.size() >= 11 && std::memcmp(table.data(), ".          ", 11) == 0);
  return {0, !isWhole, std::move(entries)};
}

}  // namespace

std::uint64_t contentHash(const Bytes& bytes) {
  std::uint64_t hash = bytes.size() + 1;
  for (std::size_t at = 0; at < bytes.size(); at += sectorSize)
    hash = combined(hash, hashOf(bytes.data() + at, std::min(sectorSize, bytes.size() - at)));
  return std::max<std::uint64_t>(hash, 1);
}

Write Write::of(std::uint64_t sector, Bytes bytes) {
  Write write{sector, std::move(bytes), {}};
  for (std::size_t at = 0; at < write.bytes.size(); at += sectorSize)
    write.hashes.push_back(hashOf(write.bytes.data() + at, sectorSize));
  return write;
}

FatVolume::FatVolume(Bytes image) : image_(std::move(image)) {
  const unsigned char* const boot = image_.data();
  const std::uint32_t reserved = number(boot + 14, 2);
  const std::uint32_t fats = boot[16];
  const std::uint32_t rootEntries = number(boot + 17, 2);
  const std::uint32_t total = number(boot + 19, 2) != 0 ? number(boot + 19, 2) : number(boot + 32, 4);
  const std::uint32_t fat16 = number(boot + 22, 2);
  perCluster_ = boot[13];
  isWide_ = fat16 == 0;
  rootStart_ = isWide_ ? number(boot + 44, 4) : 0;
  fat_ = reserved;
  root_ = fat_ + std::uint64_t{fats} * (isWide_ ? number(boot + 36, 4) : fat16);
  data_ = root_ + rootEntries * slotSize / sectorSize;
  last_ = static_cast<std::uint32_t>((total - data_) / perCluster_ + 1);
  for (std::size_t at = 0; at + sectorSize <= image_.size(); at += sectorSize)
    hashes_.push_back(hashOf(image_.data() + at, sectorSize));
}

void FatVolume::exchange(Write& write) {
  const auto at = image_.begin() + static_cast<std::ptrdiff_t>(write.sector * sectorSize);
  std::swap_ranges(write.bytes.begin(), write.bytes.end(), at);
  std::swap_ranges(write.hashes.begin(), write.hashes.end(),
                   hashes_.begin() + static_cast<std::ptrdiff_t>(write.sector));
}

std::uint32_t FatVolume::next(std::uint32_t cluster) const {
  if (isWide_) return number(sector(fat_) + std::size_t{cluster} * 4, 4) & 0x0FFFFFFFU;
  const std::uint32_t value = number(sector(fat_) + std::size_t{cluster} * 2, 2);
  return value >= 0xFFF8 ? 0x0FFFFFF8 : value;
}

void FatVolume::follow(std::uint32_t start, std::size_t limit, Chain& chain) const {
  chain.clusters.clear();
  while (start >= 2 && start <= last_ && chain.clusters.size() < limit) {
    chain.clusters.push_back(start);
    start = next(start);
    if (chain.clusters.size() > last_) break;  // a circle
  }
  // A cluster in use whose entry says free would be given to the next file.
  chain.inOrder = (start >= 0x0FFFFFF8 || chain.clusters.size() == limit) && start != 0;
}

std::uint64_t FatVolume::fileHash(std::uint32_t start, std::uint32_t size, Chain& chain) const {
  chain.clusters.clear();
  std::uint64_t hash = std::uint64_t{size} + 1;
  if (size == 0) return hash;
  const std::uint32_t clusterSize = perCluster_ * sectorSize;
  const std::size_t needed = (std::size_t{size} + clusterSize - 1) / clusterSize;
  follow(start, needed, chain);
  if (!chain.inOrder || chain.clusters.size() != needed) return 0;
  std::uint32_t left = size;
  for (const std::uint32_t cluster : chain.clusters) {
    std::uint64_t at = sectorOf(cluster);
    for (std::uint32_t i = 0; i < perCluster_ && left > 0; ++i, ++at) {
      hash = combined(hash, left >= sectorSize ? hashes_[at] : hashOf(sector(at), left));
      left -= std::min<std::uint32_t>(left, sectorSize);
    }
  }
  return std::max<std::uint64_t>(hash, 1);
}

Bytes FatVolume::bytesOf(const Chain& chain) const {
  Bytes bytes;
  for (const std::uint32_t cluster : chain.clusters)
    bytes.insert(bytes.end(), sector(sectorOf(cluster)), sector(sectorOf(cluster) + perCluster_));
  return bytes;
}

Bytes FatVolume::content(std::uint32_t start, std::uint32_t size) const {
  Chain chain;
  const std::uint32_t clusterSize = perCluster_ * sectorSize;
  follow(start, (std::size_t{size} + clusterSize - 1) / clusterSize, chain);
  Bytes bytes = bytesOf(chain);
  bytes.resize(std::min<std::size_t>(bytes.size(), size));
  return bytes;
}

FatVolume::Folder FatVolume::folder(std::uint32_t start, Chain& chain) {
  std::uint64_t hash = start + 1;
  const bool isRootTable = start == 0;
  chain = {};
  if (isRootTable) {
    for (std::uint64_t at = root_; at < data_; ++at)
      hash = combined(hash, hashes_[at]);
  } else {
    follow(start, last_, chain);
    for (const std::uint32_t cluster : chain.clusters) {
      for (std::uint32_t i = 0; i < perCluster_; ++i)
        hash = combined(hash, hashes_[sectorOf(cluster) + i]);
    }
  }
  Folder& folder = folders_[hash];
  if (!folder.entries) {
    const Bytes table = isRootTable ? Bytes(sector(root_), sector(data_)) : bytesOf(chain);
    folder = parse(table, isWide_, start == rootStart_ ? 0 : start);
    folder.hash = hash;
  }
  Folder found = folder;
  found.isBroken = found.isBroken || !chain.inOrder;
  if (folders_.size() > foldersRemembered) folders_.clear();
  return found;
}

}  // namespace tamboro::powercut
