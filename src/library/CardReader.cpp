#include "library/CardReader.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "library/CardPaths.h"

namespace tamboro {
namespace {

std::vector<std::string> listed(const FileSystem& card, const Path& folder) {
  try {
    return card.list(folder);
  } catch (const FileError&) {
    return {};
  }
}

/// Reads the documents of a folder one after another. The folder is held open: to walk down from the root again for
/// each of ten thousand files would cost a fifth of the load.
class FolderReader {
 public:
  FolderReader(const FileSystem& card, Path folder) : folder_(std::move(folder)), files_(card.rooted(folder_)) {}

  SpdDocument read(const std::string& name, std::string& buffer) const {
    try {
      files_->read(name, buffer);
    } catch (const FileError& error) {
      throw FileError(error.code(), folder_ / name);
    }
    return SpdDocument::parse(buffer);
  }

 private:
  Path folder_;
  std::unique_ptr<FileSystem> files_;
};

/// Keeps the document under its key, the first unless a later one has the name that a save writes.
template<class IsOwnName>
void keep(std::map<std::int64_t, SpdDocument>& docs, std::int64_t key, SpdDocument document, IsOwnName isOwnName) {
  const std::size_t before = docs.size();
  const auto place = docs.try_emplace(docs.end(), key, std::move(document));
  if (docs.size() == before && isOwnName()) place->second = std::move(document);
}

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

void readKits(const FileSystem& card, std::string& buffer, CardContent& content) {
  const std::vector<std::string> names = listed(card, cardpaths::kitFolder());
  if (names.empty()) return;
  const FolderReader reader(card, cardpaths::kitFolder());
  for (const std::string& name : names) {
    const auto slot = cardpaths::slotOfKitFile(name);
    if (!slot) continue;
    SpdDocument document = reader.read(name, buffer);
    content.kits.push_back({*slot, document.root, false});
    keep(content.kitDocs, *slot, std::move(document), [&] { return name == cardpaths::kitFile(*slot).filename(); });
  }
  sortRecords(content.kits, content.kitDocs, [](const Kit& kit) { return kit.slot; });
}

void readBank(const FileSystem& card, const std::string& folder, std::int64_t bank, std::string& buffer,
              CardContent& content) {
  const Path path = cardpaths::waveParameterRoot() / folder;
  const std::vector<std::string> names = listed(card, path);
  if (names.empty()) return;
  const FolderReader reader(card, path);
  for (const std::string& name : names) {
    const auto number = cardpaths::numberOfWaveFile(name);
    if (!number) continue;
    SpdDocument document = reader.read(name, buffer);
    content.waves.push_back({bank, *number, document.root, false, false});
    keep(content.waveDocs, content.waves.back().id(), std::move(document),
         [&] { return path / name == cardpaths::waveParameterFile(bank, *number); });
  }
}

}  // namespace

CardContent readCard(const FileSystem& card) {
  std::string buffer;  // one for all files
  CardContent content{{}, {}, {}, {}, {SpdNode::selfClosing({}), LineSeparator::lf, {}}};
  readKits(card, buffer, content);
  for (const std::string& name : listed(card, cardpaths::waveParameterRoot())) {
    const auto bank = cardpaths::bankOfFolder(name);
    if (bank) readBank(card, name, *bank, buffer, content);
  }
  sortRecords(content.waves, content.waveDocs, [](const Wave& wave) { return wave.id(); });
  card.read(cardpaths::tagListFile(), buffer);
  content.tagListDoc = SpdDocument::parse(buffer);
  return content;
}

}  // namespace tamboro
