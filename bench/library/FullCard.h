#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

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

/// Runs `measure` with a fresh folder, in memory or below the program's first argument; what a `main` returns.
template<class Measure>
int inFreshFolder(int argc, char** argv, const Measure& measure) {
  const std::filesystem::path memory = "/dev/shm";
  const auto parent = argc > 1                          ? std::filesystem::path(argv[1])
                      : std::filesystem::exists(memory) ? memory
                                                        : std::filesystem::temp_directory_path();
  std::string place = parent / "tamboro-bench-XXXXXX";
  if (::mkdtemp(place.data()) == nullptr) return 2;
  const bool kept = measure(std::filesystem::path(place));
  std::filesystem::remove_all(place);
  return kept ? 0 : 1;
}

}  // namespace tamboro::bench
