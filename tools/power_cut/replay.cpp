// Replays the log of recorded saves (see guest.sh) and looks at what is left of the card: after every single write
// (prefixes), and for every stretch between two flushes with chosen subsets of its writes, since a device may bring
// what it hasn't flushed in any order (reorderings: all subsets of few writes, seeded ones of many, some with writes
// torn into sectors). The usage text below tells the faults.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <stdexcept>

#include "power_cut/Expectation.h"
#include "power_cut/FatVolume.h"
#include "power_cut/WriteLog.h"

namespace tamboro::powercut {
namespace {

namespace fs = std::filesystem;

constexpr const char* usage =
    "usage: power_cut_replay FOLDER NAME [SEEDS [RANDOM]]\n"
    "FOLDER is as guest.sh leaves it; NAME goes before the counts. SEEDS is the number of subsets of one stretch "
    "between\n"
    "two flushes. Prints one line: NAME, flushes, prefixes, reorderings, then for each fault how many states show it, "
    "as\n"
    "prefixes/reorderings:\n"
    "  torn      a file is neither its old self nor its new one\n"
    "  empty     a new file has no content yet\n"
    "  missing   a file that was to stay or to be replaced isn't there\n"
    "  naming    a parameter file names audio that isn't there, or not yet the new one\n"
    "  order     something is new while what must come before it isn't\n"
    "  stale     a folder shows entries that nobody made, or its chain of clusters breaks off\n"
    "  shared    two files share a cluster\n"
    "  late      the save had returned and its outcome could still be lost\n"
    "and, which is no fault:\n"
    "  short     a new file, or one on its way out, is seen by its short name only\n"
    "  parent    the \"..\" of a new folder still leads to where it was made\n"
    "  left      something temporary is there\n"
    "Examples go to the standard error output. Exit 1 with faults.\n";

enum Fault : unsigned { torn, empty, missing, naming, order, stale, shared, late, shortName, parent, left, faultKinds };
constexpr std::array<const char*, faultKinds> faultNames = {"torn",   "empty", "missing", "naming", "order", "stale",
                                                            "shared", "late",  "short",   "parent", "left"};
constexpr unsigned firstNote = shortName;
constexpr std::size_t examplesShown = 6;

std::string upper(std::string text) {
  std::ranges::transform(text, text.begin(), [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
  return text;
}

Bytes bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("can't read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

struct Seen {
  std::vector<std::uint64_t> hashes;  ///< by number: 0 where it isn't whole, `nothing` where it isn't there
  std::vector<bool> strict;           ///< found by strict readers, too
  std::vector<std::pair<Fault, std::string>> faults;
  std::uint64_t hash = 0;  ///< of all that
};

class Replay {
 public:
  Replay(const fs::path& folder, std::size_t seeds, unsigned random)
      : folder_(folder),
        volume_(bytesOf(folder / "base.img")),
        log_(folder / "log.img"),
        seeds_(seeds),
        random_(random) {}

  bool run(const std::string& name) {
    learnBase();
    while (auto item = log_.next()) {
      if ((item->flags & WriteLog::mark) != 0) {
        if (item->mark != "dm-log-writes-end") mark(item->mark);
        continue;
      }
      if ((item->flags & WriteLog::flush) != 0) flush();
      if (!item->write.bytes.empty()) {
        volume_.exchange(item->write);
        pending_.push_back(std::move(item->write));
        if (expected_) check(0);
      }
      if ((item->flags & WriteLog::fua) != 0) flush();
    }
    flush();
    return report(name);
  }

 private:
  // ------------------------------------------------------------ looking

  void look(Seen& seen) {
    seen.hashes.assign(names_.size(), nothing);
    seen.strict.assign(names_.size(), false);
    seen.faults.clear();
    seen.hash = 0;
    ++round_;
    bool isShared = false;
    used_.resize(volume_.lastCluster() + 1);
    const auto use = [&](const FatVolume::Chain& chain) {
      for (const std::uint32_t cluster : chain.clusters) {
        isShared = isShared || used_[cluster] == round_;
        used_[cluster] = round_;
      }
    };
    const auto mix = [&](std::uint64_t value) {
      seen.hash = (seen.hash ^ value) * 0x9E3779B97F4A7C15U + (seen.hash >> 31U);
    };
    struct Place {
      std::string path;
      std::uint32_t start, parent;
      bool isStrict;
    };
    std::vector<Place> todo = {{"", volume_.root(), 0, true}};
    FatVolume::Chain chain;
    const auto fault = [&](Fault kind, const std::string& path) {
      seen.faults.emplace_back(kind, path);
      mix(kind);
      mix(std::hash<std::string>()(path));
    };
    while (!todo.empty()) {
      const Place place = std::move(todo.back());
      todo.pop_back();
      const bool isRoot = place.start == volume_.root() && place.path.empty();
      if (place.start == 0 && !isRoot) {
        fault(stale, place.path);
        continue;
      }
      const FatVolume::Folder folder = volume_.folder(place.start, chain);
      use(chain);
      if (folder.isBroken) fault(stale, place.path);
      const std::vector<std::size_t>& numbers = numbersIn(place.path, folder);
      for (std::size_t i = 0; i < folder.entries->size(); ++i) {
        const Entry& entry = (*folder.entries)[i];
        const bool isStrict = place.isStrict && !entry.stops;
        if (entry.name == "..") {
          if (entry.start != place.parent) fault(parent, place.path);
        } else if (entry.name.starts_with(".TAMBORO-")) {
          fault(left, entry.name);
        } else if (entry.isFolder) {
          const std::string path = place.path + entry.name;
          if (expected_ && !expected_->folders.contains(path)) {
            fault(stale, path);
          } else {
            todo.push_back({path + "/", entry.start, isRoot ? 0 : place.start, isStrict});
          }
        } else {
          const std::size_t number = numbers[i];
          const std::uint64_t hash = volume_.fileHash(entry.start, entry.size, chain);
          use(chain);
          if (expected_ && entry.shortOnly && hash != 0 && entry.name.find('~') != std::string::npos &&
              !isKnown(number)) {
            fault(shortName, names_.path(number));
            continue;
          }
          if (number >= seen.hashes.size()) {
            seen.hashes.resize(names_.size(), nothing);
            seen.strict.resize(names_.size(), false);
          }
          seen.hashes[number] = hash;
          if (isStrict) seen.strict[number] = true;
          mix(number * 2 + (isStrict ? 1 : 0));
          mix(hash);
        }
      }
    }
    if (isShared) fault(shared, "clusters");
  }

  bool isKnown(std::size_t number) const {
    return at(expected_->oldHashes, number) != nothing || at(expected_->nextHashes, number) != nothing;
  }

  static std::uint64_t at(const std::vector<std::uint64_t>& hashes, std::size_t number) {
    return number < hashes.size() ? hashes[number] : nothing;
  }

  const std::vector<std::size_t>& numbersIn(const std::string& path, const FatVolume::Folder& folder) {
    if (known_.size() > 200'000) known_.clear();
    std::vector<std::size_t>& numbers = known_[folder.hash ^ std::hash<std::string>()(path)];
    if (numbers.empty()) {
      for (const Entry& entry : *folder.entries)
        numbers.push_back(names_.number(path + entry.name));
    }
    return numbers;
  }

  void judge(const Seen& seen, std::vector<std::pair<Fault, std::string>>& faults) {
    faults = seen.faults;
    const auto isStrict = [&](std::size_t number) { return number < seen.strict.size() && seen.strict[number]; };
    const auto add = [&](Fault kind, std::size_t number) { faults.emplace_back(kind, names_.path(number)); };
    for (const std::size_t number : expected_->staying) {
      if (!isStrict(number)) add(missing, number);
    }
    static const std::uint64_t emptyHash = contentHash({});
    for (std::size_t number = 0; number < seen.hashes.size(); ++number) {
      const std::uint64_t hash = seen.hashes[number];
      const std::uint64_t before = at(expected_->oldHashes, number);
      const std::uint64_t after = at(expected_->nextHashes, number);
      if (hash == nothing || hash == before || hash == after) continue;
      const bool isNew = before == nothing || expected_->removed.contains(names_.path(number));
      if (hash == emptyHash && isNew && after != nothing) {
        add(empty, number);
      } else {
        add(isKnown(number) ? torn : stale, number);
      }
    }
    judgeOrder(seen, faults);
    judgeNames(seen, faults);
    // Entries that nobody made lead anywhere.
    const auto is = [](Fault kind) { return [kind](const auto& fault) { return fault.first == kind; }; };
    if (std::ranges::any_of(faults, is(stale))) std::erase_if(faults, is(shared));
  }

  void judgeOrder(const Seen& seen, std::vector<std::pair<Fault, std::string>>& faults) const {
    const auto isFresh = [&](std::size_t number) { return at(seen.hashes, number) == expected_->nextHashes[number]; };
    const auto& changed = expected_->changed;
    bool anyFresh = false;
    bool allBefore = true;
    for (std::size_t rank = 0; rank < changed.size(); ++rank) {
      const bool some = std::ranges::any_of(changed.at(rank), isFresh);
      // Sounds and their parameters come in rounds; what comes behind them comes behind all of them.
      if (rank >= 2 && some && !allBefore) faults.emplace_back(order, ranks.at(rank));
      anyFresh = anyFresh || some;
      allBefore = allBefore && std::ranges::all_of(changed.at(rank), isFresh);
    }
    bool kitGone = false;
    for (const std::size_t number : expected_->going) {
      const bool isThere = at(seen.hashes, number) == expected_->oldHashes[number] && !isFresh(number);
      if (anyFresh && isThere) faults.emplace_back(order, names_.path(number));
      kitGone =
          kitGone || (names_.path(number).starts_with(cardFolder + ranks[2]) && at(seen.hashes, number) == nothing);
    }
    for (const std::size_t number : expected_->going) {
      const bool isThere = at(seen.hashes, number) == expected_->oldHashes[number] && !isFresh(number);
      if (kitGone && isThere && names_.path(number).starts_with(cardFolder + "WAVE/")) {
        faults.emplace_back(order, names_.path(number));
      }
    }
  }

  void judgeNames(const Seen& seen, std::vector<std::pair<Fault, std::string>>& faults) const {
    for (const auto& [parameters, audio] : audioOf_) {
      const auto& [number, hash] = parameters;
      if (at(seen.hashes, number) != hash) continue;
      const std::uint64_t before = at(expected_->oldHashes, audio);
      const std::uint64_t after = at(expected_->nextHashes, audio);
      if (before == nothing && after == nothing) continue;
      const std::uint64_t shown = at(seen.hashes, audio);
      const bool isRight = shown != nothing && seen.strict[audio] &&
                           ((hash == at(expected_->oldHashes, number) && shown == before) ||
                            (hash == at(expected_->nextHashes, number) && shown == after));
      if (!isRight) faults.emplace_back(naming, names_.path(number));
    }
  }

  // Judges the state that the volume is in, one that was judged before by its hash.
  void check(std::size_t what) {
    ++states_.at(what);
    look(seen_);
    const auto [found, isNew] = verdicts_.try_emplace(seen_.hash, 0);
    if (isNew || examplesOf(found->second, what) < examplesShown) {
      std::vector<std::pair<Fault, std::string>> faults;
      judge(seen_, faults);
      for (const auto& [kind, path] : faults) {
        found->second |= 1U << kind;
        example(kind, what, path);
      }
    }
    count(what, found->second);
  }

  // The least that any of the faults has.
  std::size_t examplesOf(unsigned faults, std::size_t what) const {
    std::size_t least = examplesShown;
    for (unsigned kind = 0; kind < firstNote; ++kind) {
      if ((faults >> kind & 1U) != 0) least = std::min(least, examples_.at(kind).at(what).size());
    }
    return least;
  }

  void example(Fault kind, std::size_t what, const std::string& path) {
    if (kind >= firstNote) return;
    const std::string text = place_ + ", flush " + std::to_string(flushes_) + ", " +
                             (what == 0 ? "prefix" : "reordering") + " of " + std::to_string(pending_.size()) + ": " +
                             path;
    auto& shown = examples_.at(kind).at(what);
    if (shown.size() < examplesShown && (shown.empty() || shown.back() != text)) shown.push_back(text);
  }

  void count(std::size_t what, unsigned faults) {
    for (unsigned kind = 0; kind < faultKinds; ++kind)
      counts_.at(kind).at(what) += faults >> kind & 1U;
    bad_.at(what) += (faults & ((1U << firstNote) - 1)) != 0 ? 1 : 0;
  }

  // ------------------------------------------------------------ replaying

  void flush() {
    ++flushes_;
    if (expected_ && !pending_.empty()) reorder();
    pending_.clear();
  }

  void takeBack(std::vector<Write>& writes) {
    for (auto write = writes.rbegin(); write != writes.rend(); ++write)
      volume_.exchange(*write);
  }

  void put(std::vector<Write>& writes) {
    for (Write& write : writes)
      volume_.exchange(write);
  }

  void reorder() {
    takeBack(pending_);
    const std::size_t count = pending_.size();
    const bool isSmall = count < 20 && (std::size_t{1} << count) <= std::max<std::size_t>(seeds_, 2);
    const std::size_t subsets = isSmall ? std::size_t{1} << count : seeds_;
    std::vector<Write> sectors;
    if (!isSmall) sectors = torn512();
    for (std::size_t number = 0; number < subsets; ++number) {
      std::vector<Write>& from = !isSmall && number % 4 == 3 ? sectors : pending_;
      const std::vector<std::size_t> chosen = choose(from.size(), number, isSmall);
      for (const std::size_t i : chosen)
        volume_.exchange(from[i]);
      check(1);
      for (auto i = chosen.rbegin(); i != chosen.rend(); ++i)
        volume_.exchange(from[*i]);
    }
    put(pending_);
  }

  std::vector<std::size_t> choose(std::size_t count, std::size_t number, bool isSmall) {
    std::vector<std::size_t> chosen;
    const std::size_t one = random_() % count;
    const std::size_t share = std::array<std::size_t, 3>{2, 5, 8}.at(random_() % 3);
    for (std::size_t i = 0; i < count; ++i) {
      const bool isIn = isSmall           ? (number >> i & 1U) != 0
                        : number % 4 == 0 ? i != one
                        : number % 4 == 1 ? i == one
                                          : random_() % 10 < share;
      if (isIn) chosen.push_back(i);
    }
    return chosen;
  }

  // The writes as sectors, the least that a device brings whole.
  std::vector<Write> torn512() const {
    std::vector<Write> sectors;
    for (const Write& write : pending_) {
      for (std::size_t i = 0; i < write.hashes.size(); ++i) {
        const auto from = write.bytes.begin() + static_cast<std::ptrdiff_t>(i * sectorSize);
        sectors.push_back({write.sector + i, Bytes(from, from + sectorSize), {write.hashes[i]}});
      }
    }
    return sectors;
  }

  // ------------------------------------------------------------ saves

  void mark(const std::string& text) {
    const std::string number = text.substr(text.find('-') + 1);
    const Tree after = tree(number);
    place_ = text;
    verdicts_.clear();
    if (text.starts_with("begin")) {
      expected_.reset();
      Tree old = treeOnVolume();
      std::set<std::string> removed;
      std::ifstream lines(folder_ / (number + ".removed"));
      for (std::string line; std::getline(lines, line);) {
        if (old.contains(cardFolder + upper(line))) removed.insert(cardFolder + upper(line));
      }
      Tree next = after;
      for (const auto& [path, hash] : old) {
        if (!path.starts_with(cardFolder)) next[path] = hash;
      }
      expected_.emplace(std::move(old), std::move(next), std::move(removed), names_);
      return;
    }
    if (text.starts_with("end")) checkLate();
    const Tree done = expected_->next;
    expected_.emplace(done, done, std::set<std::string>(), names_);
  }

  // Nothing that isn't flushed by now may be needed.
  void checkLate() {
    takeBack(pending_);
    look(seen_);
    bool isLate = false;
    for (std::size_t number = 0; number < names_.size(); ++number) {
      const std::uint64_t after = at(expected_->nextHashes, number);
      if (at(seen_.hashes, number) == after && (after == nothing || seen_.strict[number])) continue;
      example(late, 0, names_.path(number));
      isLate = true;
    }
    if (isLate) count(0, 1U << late);
    put(pending_);
  }

  Tree treeOnVolume() {
    look(seen_);
    Tree tree;
    for (std::size_t number = 0; number < seen_.hashes.size(); ++number) {
      if (seen_.hashes[number] != nothing) tree[names_.path(number)] = seen_.hashes[number];
    }
    return tree;
  }

  // The card's files as the driver copied them behind a save.
  Tree tree(const std::string& number) {
    Tree tree;
    const fs::path root = folder_ / number;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
      if (!entry.is_regular_file()) continue;
      const std::string path = cardFolder + upper(entry.path().lexically_relative(root).string());
      const Bytes bytes = bytesOf(entry.path());
      tree[path] = contentHash(bytes);
      learn(path, bytes);
    }
    return tree;
  }

  void learn(const std::string& path, const Bytes& bytes) {
    if (!path.starts_with(cardFolder + ranks[1])) return;
    const std::string text(bytes.begin(), bytes.end());
    static const std::regex pattern("<Path>(.+?)</Path>");
    std::smatch found;
    if (!std::regex_search(text, found, pattern)) return;
    audioOf_[{names_.number(path), contentHash(bytes)}] = names_.number(cardFolder + ranks[0] + upper(found[1].str()));
  }

  void learnBase() {
    FatVolume::Chain chain;
    std::vector<std::pair<std::string, std::uint32_t>> todo = {{"", volume_.root()}};
    while (!todo.empty()) {
      const auto [path, start] = todo.back();
      todo.pop_back();
      const auto entries = volume_.folder(start, chain).entries;
      for (const Entry& entry : *entries) {
        if (entry.name == "..") continue;
        if (entry.isFolder) {
          todo.emplace_back(path + entry.name + "/", entry.start);
        } else {
          learn(path + entry.name, volume_.content(entry.start, entry.size));
        }
      }
    }
  }

  bool report(const std::string& name) const {
    std::printf("%s\t%zu\t%zu\t%zu", name.c_str(), flushes_, states_[0], states_[1]);
    for (const auto& counts : counts_)
      std::printf("\t%zu/%zu", counts[0], counts[1]);
    std::printf("\t%zu/%zu\n", bad_[0], bad_[1]);
    for (unsigned kind = 0; kind < firstNote; ++kind) {
      for (const auto& texts : examples_.at(kind)) {
        for (const std::string& text : texts)
          std::fprintf(stderr, "  %s: %s: %s\n", name.c_str(), faultNames.at(kind), text.c_str());
      }
    }
    return bad_[0] + bad_[1] > 0;
  }

  fs::path folder_;
  FatVolume volume_;
  WriteLog log_;
  std::size_t seeds_;
  std::mt19937 random_;
  Names names_;
  std::map<std::pair<std::size_t, std::uint64_t>, std::size_t> audioOf_;  ///< by parameter file and its content
  std::unordered_map<std::uint64_t, std::vector<std::size_t>> known_;     ///< numbers of the entries of a folder
  std::vector<std::uint32_t> used_;                                       ///< round in which a cluster was last met
  std::uint32_t round_ = 0;
  Seen seen_;
  std::vector<Write> pending_;  ///< writes since the last flush; they are on the volume
  std::string place_;
  std::optional<Expectation> expected_;
  std::unordered_map<std::uint64_t, unsigned> verdicts_;  ///< kinds of faults by what is seen
  std::size_t flushes_ = 0;
  std::array<std::size_t, 2> states_{};  ///< prefixes, reorderings
  std::array<std::size_t, 2> bad_{};
  std::array<std::array<std::size_t, 2>, faultKinds> counts_{};
  std::array<std::array<std::vector<std::string>, 2>, firstNote> examples_;  ///< of prefixes and reorderings
};

}  // namespace
}  // namespace tamboro::powercut

int main(int argc, char** argv) try {
  if (argc < 3) {
    std::fputs(tamboro::powercut::usage, stderr);
    return 2;
  }
  const std::size_t seeds = argc > 3 ? std::stoul(argv[3]) : 64;
  const unsigned random = argc > 4 ? static_cast<unsigned>(std::stoul(argv[4])) : 1;
  return tamboro::powercut::Replay(argv[1], seeds, random).run(argv[2]) ? 1 : 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "power_cut_replay: %s\n", error.what());
  return 2;
}
