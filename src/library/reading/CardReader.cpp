#include "library/reading/CardReader.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <memory>
#include <set>
#include <span>
#include <utility>

#include "library/CardPaths.h"

namespace tamboro {
namespace {

constexpr std::size_t banksWorthAThread = 8;

std::vector<std::string> listed(const FileSystem& card, const Path& folder) {
  try {
    return card.list(folder);
  } catch (const FileError& error) {
    if (error.code() != std::errc::no_such_file_or_directory && error.code() != std::errc::not_a_directory) throw;
    return {};
  }
}

SpdDocument parsed(const std::string& bytes, const Path& file, KnownFiles& known) {
  try {
    SpdDocument document = SpdDocument::parse(bytes);
    known.note(file, contentHash(bytes));
    return document;
  } catch (const SpdParseError& error) {
    throw DamagedFile(error, file);
  }
}

/// Reads the documents of a folder one after another. The folder is held open: to walk down from the root again for
/// each of ten thousand files would cost a fifth of the load.
class FolderReader {
 public:
  FolderReader(const FileSystem& card, Path folder) : folder_(std::move(folder)), files_(card.rooted(folder_)) {}

  SpdDocument read(const std::string& name, std::string& buffer, KnownFiles& known) const {
    try {
      files_->read(name, buffer);
    } catch (const FileError& error) {
      throw FileError(error.code(), folder_ / name);
    }
    return parsed(buffer, folder_ / name, known);
  }

 private:
  Path folder_;
  std::unique_ptr<FileSystem> files_;
};

/// Documents by key. Of several for one key the first stays, unless a later one has the name that a save writes.
class Documents {
 public:
  template<class IsOwnName>
  void add(std::int64_t key, SpdDocument document, IsOwnName isOwnName) {
    const std::size_t before = docs_.size();
    const auto place = docs_.try_emplace(docs_.end(), key, std::move(document));
    if (isOwnName()) {
      if (docs_.size() == before) place->second = std::move(document);
      underOtherNames_.erase(key);
    } else if (docs_.size() != before) {
      underOtherNames_.insert(key);
    }
  }
  /// Adds those of `later`.
  void take(Documents later) {
    docs_.merge(later.docs_);
    for (auto& [key, document] : later.docs_) {  // what is left has a key that was here already
      if (underOtherNames_.contains(key) && !later.underOtherNames_.contains(key)) {
        docs_.insert_or_assign(key, std::move(document));
      }
    }
  }
  std::map<std::int64_t, SpdDocument> all() && { return std::move(docs_); }

 private:
  std::map<std::int64_t, SpdDocument> docs_;
  std::set<std::int64_t> underOtherNames_;
};

/// Ascending by key; of one key the record of the kept document first.
template<class Record, class KeyOf>
void sortRecords(std::vector<Record>& records, const std::map<std::int64_t, SpdDocument>& docs, KeyOf keyOf) {
  const auto isKept = [&](const Record& record) { return record.node == docs.at(keyOf(record)).root; };
  const auto byKey = [&](const Record& a, const Record& b) { return keyOf(a) < keyOf(b); };
  if (!std::is_sorted(records.begin(), records.end(), byKey)) std::stable_sort(records.begin(), records.end(), byKey);
  const auto sameKey = [&](const Record& a, const Record& b) { return keyOf(a) == keyOf(b); };
  for (auto first = std::adjacent_find(records.begin(), records.end(), sameKey); first != records.end();
       first = std::adjacent_find(first, records.end(), sameKey)) {
    const auto last = std::find_if(first, records.end(), [&](const Record& r) { return !sameKey(*first, r); });
    std::stable_partition(first, last, isKept);
    first = last;
  }
}

void readKits(const FileSystem& card, CardContent& content) {
  const std::vector<std::string> names = listed(card, cardpaths::kitFolder());
  if (names.empty()) return;
  const FolderReader reader(card, cardpaths::kitFolder());
  std::string buffer;
  Documents docs;
  for (const std::string& name : names) {
    const auto slot = cardpaths::slotOfKitFile(name);
    if (!slot) continue;
    SpdDocument document = reader.read(name, buffer, content.known);
    content.kits.push_back({*slot, document.root, false});
    docs.add(*slot, std::move(document), [&] { return name == cardpaths::kitFile(*slot).filename(); });
  }
  content.kitDocs = std::move(docs).all();
  sortRecords(content.kits, content.kitDocs, [](const Kit& kit) { return kit.slot; });
}

struct Bank {
  std::string folder;
  std::int64_t number;
};

struct Samples {
  std::vector<Wave> waves;
  Documents docs;
  KnownFiles known;
};

void readBank(const FileSystem& card, const Bank& bank, std::string& buffer, Samples& samples) {
  const Path path = cardpaths::waveParameterRoot() / bank.folder;
  const std::vector<std::string> names = listed(card, path);
  if (names.empty()) return;
  const FolderReader reader(card, path);
  for (const std::string& name : names) {
    const auto number = cardpaths::numberOfWaveFile(name);
    if (!number) continue;
    SpdDocument document = reader.read(name, buffer, samples.known);
    samples.waves.push_back({bank.number, *number, document.root, false, false});
    samples.docs.add(samples.waves.back().id(), std::move(document),
                     [&] { return path / name == cardpaths::waveParameterFile(bank.number, *number); });
  }
}

Samples readBanks(const FileSystem& card, std::span<const Bank> banks) {
  Samples samples;
  std::string buffer;
  for (const Bank& bank : banks)
    readBank(card, bank, buffer, samples);
  return samples;
}

/// A full card has ten thousand small files; two threads read them in little more than half the time. Each has banks
/// of its own, and the first failure in the order of the banks is the one that is told.
void readSamples(const FileSystem& card, CardContent& content) {
  std::vector<Bank> banks;
  for (const std::string& name : listed(card, cardpaths::waveParameterRoot())) {
    if (const auto number = cardpaths::bankOfFolder(name)) banks.push_back({name, *number});
  }
  const std::span<const Bank> all(banks);
  const std::size_t half = all.size() < banksWorthAThread ? all.size() : all.size() / 2;
  // Without a further thread to be had, the rest is read on this one.
  const auto policy = half == all.size() ? std::launch::deferred : std::launch::async | std::launch::deferred;
  auto rest = std::async(policy, [&card, share = all.subspan(half)] { return readBanks(card, share); });
  Samples samples = readBanks(card, all.first(half));
  Samples later = rest.get();
  std::ranges::move(later.waves, std::back_inserter(samples.waves));
  samples.docs.take(std::move(later.docs));
  content.known.take(samples.known);
  content.known.take(later.known);
  content.waves = std::move(samples.waves);
  content.waveDocs = std::move(samples.docs).all();
  sortRecords(content.waves, content.waveDocs, [](const Wave& wave) { return wave.id(); });
}

}  // namespace

CardContent readCard(const FileSystem& card) {
  CardContent content{{}, {}, {}, {}, {SpdNode::selfClosing({}), LineSeparator::lf, {}}, {}};
  readKits(card, content);
  readSamples(card, content);
  std::string buffer;
  card.read(cardpaths::tagListFile(), buffer);
  content.tagListDoc = parsed(buffer, cardpaths::tagListFile(), content.known);
  content.known.settle();
  return content;
}

}  // namespace tamboro
