#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace tamboro::powercut {

inline const std::string cardFolder = "ROLAND/SPD-SX/";
inline constexpr std::array<const char*, 5> ranks = {"WAVE/DATA/", "WAVE/PRM/", "KIT/", "SYSTEM/TAG_LIST",
                                                     "SYSTEM/WAVELIST"};

inline constexpr std::uint64_t nothing = ~std::uint64_t{0};  ///< the hash of what isn't there

/// Paths as numbers, so that a card's files are a plain list.
class Names {
 public:
  std::size_t number(const std::string& path) {
    const auto [found, isNew] = numbers_.try_emplace(path, paths_.size());
    if (isNew) paths_.push_back(path);
    return found->second;
  }
  const std::string& path(std::size_t number) const { return paths_[number]; }
  std::size_t size() const { return paths_.size(); }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
  std::vector<std::string> paths_;
};

using Tree = std::map<std::string, std::uint64_t>;  ///< hashes of contents by path

/// What may be seen while the card goes from the files `old` to the files `next`.
struct Expectation {
  Tree old, next;
  std::set<std::string> removed, folders;
  std::vector<std::uint64_t> oldHashes, nextHashes;  ///< by number
  std::vector<std::size_t> staying, going;
  std::array<std::vector<std::size_t>, ranks.size()> changed;

  Expectation(Tree from, Tree to, std::set<std::string> gone, Names& names)
      : old(std::move(from)), next(std::move(to)), removed(std::move(gone)) {
    for (const Tree* tree : {&old, &next}) {
      for (const auto& [path, hash] : *tree) {
        names.number(path);
        for (std::size_t i = path.find('/'); i != std::string::npos; i = path.find('/', i + 1))
          folders.insert(path.substr(0, i));
      }
    }
    const auto list = [&](const Tree& tree) {
      std::vector<std::uint64_t> hashes(names.size(), nothing);
      for (const auto& [path, hash] : tree)
        hashes[names.number(path)] = hash;
      return hashes;
    };
    oldHashes = list(old);
    nextHashes = list(next);
    for (const auto& [path, hash] : old) {
      if (next.contains(path) && !removed.contains(path)) staying.push_back(names.number(path));
    }
    for (const std::string& path : removed)
      going.push_back(names.number(path));
    for (const auto& [path, hash] : next) {
      const auto before = old.find(path);
      for (std::size_t i = 0; i < ranks.size(); ++i) {
        if (path.starts_with(cardFolder + ranks.at(i)) && (before == old.end() || before->second != hash)) {
          changed.at(i).push_back(names.number(path));
        }
      }
    }
  }
};

}  // namespace tamboro::powercut
