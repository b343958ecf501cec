// Tries the inputs that are kept, in name order: the seeds, and what once was found.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/Fuzzing.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> inputs;
  for (const char* folder : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    if (!std::filesystem::is_directory(folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      inputs.push_back(entry.path());
  }
  std::ranges::sort(inputs);
  for (const std::filesystem::path& path : inputs) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    tamboro::fuzz::tryInput({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }
  tamboro::fuzz::require(!inputs.empty(), "there are inputs");
}
