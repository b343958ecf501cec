#include "library/CardReader.h"

#include <algorithm>
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

/// Reads the files of a card one after another through one buffer.
class DocumentReader {
 public:
  explicit DocumentReader(const FileSystem& card) : card_(card) {}
  SpdDocument read(const Path& file) {
    card_.read(file, buffer_);
    return SpdDocument::parse(buffer_);
  }

 private:
  const FileSystem& card_;
  std::string buffer_;
};

/// Keeps the document under its key; `isOwnName` says that the file has the name that a save writes.
void keep(std::map<std::int64_t, SpdDocument>& docs, std::int64_t key, SpdDocument document, bool isOwnName) {
  if (isOwnName) {
    docs.insert_or_assign(key, std::move(document));
  } else {
    docs.try_emplace(key, std::move(document));
  }
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

void readKits(const FileSystem& card, DocumentReader& reader, CardContent& content) {
  for (const std::string& name : listed(card, cardpaths::kitFolder())) {
    const auto slot = cardpaths::slotOfKitFile(name);
    if (!slot) continue;
    const Path file = cardpaths::kitFolder() / name;
    SpdDocument document = reader.read(file);
    content.kits.push_back({*slot, document.root, false});
    keep(content.kitDocs, *slot, std::move(document), file == cardpaths::kitFile(*slot));
  }
  sortRecords(content.kits, content.kitDocs, [](const Kit& kit) { return kit.slot; });
}

void readBank(const FileSystem& card, const Path& folder, std::int64_t bank, DocumentReader& reader,
              CardContent& content) {
  for (const std::string& name : listed(card, folder)) {
    const auto number = cardpaths::numberOfWaveFile(name);
    if (!number) continue;
    const Path file = folder / name;
    SpdDocument document = reader.read(file);
    content.waves.push_back({bank, *number, document.root, false, false});
    keep(content.waveDocs, content.waves.back().id(), std::move(document),
         file == cardpaths::waveParameterFile(bank, *number));
  }
}

}  // namespace

CardContent readCard(const FileSystem& card) {
  DocumentReader reader(card);
  CardContent content{{}, {}, {}, {}, {SpdNode::selfClosing({}), LineSeparator::lf, {}}};
  readKits(card, reader, content);
  for (const std::string& name : listed(card, cardpaths::waveParameterRoot())) {
    const auto bank = cardpaths::bankOfFolder(name);
    if (bank) readBank(card, cardpaths::waveParameterRoot() / name, *bank, reader, content);
  }
  sortRecords(content.waves, content.waveDocs, [](const Wave& wave) { return wave.id(); });
  content.tagListDoc = reader.read(cardpaths::tagListFile());
  return content;
}

}  // namespace tamboro
