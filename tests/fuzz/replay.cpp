// Tries the inputs that are kept, in name order: the seeds, and what once was found. A number among the folders adds
// as many inputs of random bytes, the same ones each time.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "fuzz/Fuzzing.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> inputs;
  int randomInputs = 0;
  for (const char* folder : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    randomInputs += std::atoi(folder);
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
  std::mt19937 random;  // NOLINT: the same inputs each time
  for (int number = 1; number <= randomInputs; ++number) {
    std::printf("random input %d\n", number);
    std::fflush(stdout);
    std::vector<std::uint8_t> bytes(random() % 256);
    std::ranges::generate(bytes, random);
    tamboro::fuzz::tryInput(bytes);
  }
  tamboro::fuzz::require(!inputs.empty(), "there are inputs");
}
