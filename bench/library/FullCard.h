#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "make_card/CardMaker.h"

namespace tamboro::bench {

/// Writes a card without audio below a folder.
inline void writeCard(const std::filesystem::path& root, int kits, int samples) {
  std::filesystem::create_directories(root / "WAVE/DATA");
  const CardOptions options{.kits = kits, .samples = samples, .audio = Audio::none};
  makeCard(options, [&](const std::string& path, std::string_view bytes) {
    const std::filesystem::path file = root / path;
    std::filesystem::create_directories(file.parent_path());
    if (!std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
      std::abort();
  });
}

}  // namespace tamboro::bench
