#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace tamboro::powercut {

constexpr std::size_t sectorSize = 512;
using Bytes = std::vector<unsigned char>;

/// The hash of a file's content, the same whether it comes from a volume or from a file beside it; never 0.
std::uint64_t contentHash(const Bytes& bytes);

/// A write to a volume: its first sector and its content. Putting it on the volume exchanges the two, so that putting
/// it there once more takes it back.
struct Write {
  std::uint64_t sector = 0;
  Bytes bytes;
  std::vector<std::uint64_t> hashes;  ///< of the sectors

  static Write of(std::uint64_t sector, Bytes bytes);
};

/// What stands in a folder.
struct Entry {
  std::string name;  ///< in capitals
  bool isFolder = false;
  std::uint32_t start = 0;
  std::uint32_t size = 0;
  bool stops = false;      ///< behind a free slot that ends the folder for strict readers (the instrument)
  bool shortOnly = false;  ///< its long name doesn't belong to it
};

/// A FAT16 or FAT32 image, read the way a card's user would see it after a power cut: as Linux does, which reads on
/// behind a folder's end.
class FatVolume {
 public:
  explicit FatVolume(Bytes image);

  void exchange(Write& write);

  std::uint32_t root() const { return rootStart_; }
  std::uint32_t lastCluster() const { return last_; }

  /// A chain of clusters from `start`, `limit` at most. Not in order: it ends in a free cluster or elsewhere.
  struct Chain {
    std::vector<std::uint32_t> clusters;
    bool inOrder = true;
  };
  void follow(std::uint32_t start, std::size_t limit, Chain& chain) const;

  /// 0 where the chain breaks off before the end of the file.
  std::uint64_t fileHash(std::uint32_t start, std::uint32_t size, Chain& chain) const;
  Bytes content(std::uint32_t start, std::uint32_t size) const;

  struct Folder {
    std::uint64_t hash = 0;  ///< of its content
    bool isBroken = false;   ///< its chain or its first entry "." is wrong
    std::shared_ptr<const std::vector<Entry>> entries;
  };
  Folder folder(std::uint32_t start, Chain& chain);

 private:
  const unsigned char* sector(std::uint64_t number) const { return image_.data() + number * sectorSize; }
  std::uint64_t sectorOf(std::uint32_t cluster) const { return data_ + std::uint64_t{cluster - 2} * perCluster_; }
  std::uint32_t next(std::uint32_t cluster) const;
  Bytes bytesOf(const Chain& chain) const;

  Bytes image_;
  std::vector<std::uint64_t> hashes_;  ///< of the sectors
  bool isWide_ = false;                ///< FAT32
  std::uint32_t rootStart_ = 0;
  std::uint32_t perCluster_ = 0;
  std::uint32_t last_ = 0;
  std::uint64_t fat_ = 0;   ///< sectors
  std::uint64_t root_ = 0;  ///< of FAT16
  std::uint64_t data_ = 0;
  std::unordered_map<std::uint64_t, Folder> folders_;  ///< by content
};

}  // namespace tamboro::powercut
