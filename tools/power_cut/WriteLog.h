#pragma once

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "power_cut/FatVolume.h"

namespace tamboro::powercut {

/// The log of dm-log-writes, entry by entry.
class WriteLog {
 public:
  enum Flag : std::uint64_t { flush = 1, fua = 2, discard = 4, mark = 8 };
  struct Item {
    std::uint64_t flags = 0;
    Write write;
    std::string mark;
  };

  explicit WriteLog(const std::filesystem::path& path) : stream_(path, std::ios::binary) {
    struct {
      std::uint64_t magic, version, entries;
      std::uint32_t sector;
    } head{};
    read(&head, 28);
    if (head.magic != 0x6A736677736872U) throw std::runtime_error("no log of dm-log-writes");
    left_ = head.entries;
    sector_ = head.sector;
    stream_.seekg(static_cast<std::streamoff>(sector_));
  }

  std::optional<Item> next() {
    if (left_-- == 0) return std::nullopt;
    Bytes header(sector_);
    read(header.data(), sector_);
    std::array<std::uint64_t, 4> fields{};
    std::memcpy(fields.data(), header.data(), sizeof fields);
    const auto [start, count, flags, length] = fields;
    Item item{flags, {}, {}};
    if ((flags & mark) != 0) {
      item.mark.assign(header.begin() + 32, header.begin() + 32 + static_cast<std::ptrdiff_t>(length));
      item.mark = item.mark.c_str();
      return item;
    }
    if ((flags & discard) != 0) throw std::runtime_error("a discard: not a mount as users have it");
    Bytes bytes(count * sector_);
    read(bytes.data(), bytes.size());
    item.write = Write::of(start * sector_ / sectorSize, std::move(bytes));
    return item;
  }

 private:
  void read(void* to, std::size_t size) {
    if (!stream_.read(static_cast<char*>(to), static_cast<std::streamsize>(size))) throw std::runtime_error("log ends");
  }

  std::ifstream stream_;
  std::uint64_t left_ = 0;
  std::size_t sector_ = sectorSize;
};

}  // namespace tamboro::powercut
