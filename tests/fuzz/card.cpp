// A whole card in memory: loaded, edited, undone, saved, loaded again. An input is a byte that counts the edits, four
// bytes for each, the same for other steps, and then files: 0x1E, a name below the card's root, a line feed, the bytes.
// They replace files of the small card or stand beside them; one whose name begins with "-" is taken away.

#include <QCoreApplication>
#include <QStandardPaths>
#include <algorithm>
#include <set>
#include <tuple>

#include "card/SpdDocument.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/NaiveDocument.h"
#include "library/CardPaths.h"
#include "support/TestStore.h"

namespace tamboro::fuzz {
namespace {

using test::TestStore;
using test::Tree;

bool isName(const std::string& name) {
  if (name.empty() || name.find('\0') != std::string::npos) return false;
  const Path path(name);
  return path.is_relative() && path.has_filename() && path.lexically_normal().native() == name && name != "." &&
         *path.begin() != "..";
}

/// No name is both a file and a folder.
bool canStandTogether(const Tree& card) {
  return std::ranges::none_of(card, [&](const auto& file) {
    Path folder = Path(file.first).parent_path();
    for (; !folder.empty(); folder = folder.parent_path()) {
      if (card.contains(folder.generic_string())) return true;
    }
    return false;
  });
}

/// Adds the input's files to the small card; true where there are none.
bool addFiles(const std::string& bytes, Tree& card) {
  bool isOwn = true;
  for (std::size_t start = bytes.find('\x1E'); start != std::string::npos;) {
    const std::size_t end = bytes.find('\x1E', start + 1);
    const std::string part = bytes.substr(start + 1, end == std::string::npos ? end : end - start - 1);
    start = end;
    const std::size_t line = part.find('\n');
    if (line == std::string::npos) continue;
    const std::string name = part.substr(0, line);
    isOwn = false;
    if (name.starts_with('-')) {
      card.erase(name.substr(1));
    } else if (isName(name)) {
      card[name] = part.substr(line + 1);
    }
  }
  return isOwn;
}

/// The same elements; whitespace that the writer lays out may be told or not.
bool haveSameContent(const SpdNode& a, const SpdNode& b) {
  return a.name() == b.name() && a.content() == b.content() && a.text() == b.text() &&
         std::ranges::equal(a.children(), b.children(), haveSameContent);
}

template<class Record>
std::vector<SpdNode> nodesOf(const std::vector<Record>& records) {
  std::vector<SpdNode> nodes;
  for (const Record& record : records)
    nodes.push_back(record.node);
  return nodes;
}

class Session {
 public:
  Session(const Tree& card, Choices edits, Choices steps) : before_(card), edits_(edits), steps_(steps) {
    store_.mountCard("fat:1234-ABCD", before_);
  }

  /// False where the card doesn't open.
  bool open() {
    try {
      store_.library.load("/media/card");
    } catch (const std::exception&) {
      return false;
    }
    test::writeTree(store_.files, "/home", {{"kick.wav", "1"}, {"a:b?.wav", "2"}});
    return true;
  }
  bool isUntouched() { return test::readTree(store_.files, TestStore::root) == before_; }

  void undoableEdits() {
    RolandLibrary& library = store_.library;
    const State opened = state();
    while (!edits_.isEmpty())
      store_.turn([&] { edit(edits_); });
    noteDirty();
    const State edited = state();
    while (library.undoManager().canUndo())
      library.undoManager().undo();
    require(state() == opened, "undoing all leads back to what was opened");
    while (library.undoManager().canRedo())
      library.undoManager().redo();
    require(state() == edited, "redoing all leads to what was edited");
  }

  void anySteps() {
    while (!steps_.isEmpty()) {
      Choices step = steps_.split(4);
      store_.turn([&] { anyStep(step); });
      noteDirty();
    }
    // One by one: what a job adds can be saved by the next.
    while (store_.jobs.runWork() || store_.jobs.deliver())
      noteDirty();
  }

  void saveAndReadAgain(bool mustSucceed) {
    const bool wasUnsaved = store_.library.hasUnsavedChanges();
    const std::string error = store_.save();
    const Tree after = store_.card();
    requireOnlyOurs(after);
    require(!mustSucceed || error.empty(), "a sound card is saved: " + error);
    if (!error.empty()) {
      require(store_.library.hasUnsavedChanges() == wasUnsaved, "what failed to be saved is unsaved");
      return;
    }
    if (mustSucceed) require(!store_.library.hasUnsavedChanges(), "a save leaves nothing unsaved");
    requireNothingLeftBehind();
    TestStore again(store_.files, store_.files);
    again.library.load("/media/card");
    if (isPlain(after)) requireSameRecords(again.library);
    require(again.save().empty(), "it can be saved again");
    const Tree twice = store_.card();
    require(twice == after, "a save of nothing changes nothing:\n" + test::difference(after, twice));
  }

 private:
  using State = std::tuple<std::vector<SpdNode>, std::vector<SpdNode>, SpdNode>;

  State state() const {
    return {nodesOf(store_.library.kits()), nodesOf(store_.library.waves()), store_.library.tagList()->node};
  }
  Slot slot(Choices& from) const {
    const auto& kits = store_.library.kits();
    return kits.empty() ? 7 : kits[from.byte() % kits.size()].slot;
  }
  WaveId wave(Choices& from) const {
    const auto& waves = store_.library.waves();
    return waves.empty() ? 207 : waves[from.byte() % waves.size()].id();
  }

  void edit(Choices& from) {
    RolandLibrary& library = store_.library;
    Choices step = from.split(4);
    const int kind = step.below(14);
    const Slot kit = slot(step);
    const int value = step.byte();
    const int pad = step.below(17) - 1;
    const std::string name(static_cast<std::size_t>(value % 20), static_cast<char>('A' + pad));
    switch (kind) {
      case 0:
        return library.setKitLevel(kit, value);
      case 1:
        return library.setKitName(kit, name);
      case 2:
        return library.setKitTempo(kit, value / 7.0);
      case 3:
        return library.setFxParam(kit, 1 + value % 2, pad, value);
      case 4:
        return library.exchangePads(kit, pad, value % 17 - 1);
      case 5:
        return library.setPadSound(kit, pad, value);
      case 6:
        return library.resetPad(kit, pad);
      case 7:
        return library.setPadSubPan(kit, pad, value);
      case 8:
        return library.applySettingsToAllPads(kit, pad,
                                              {&padSettings.at(static_cast<std::size_t>(value) % padSettings.size()),
                                               &padSettings.at(static_cast<std::size_t>(value) / padSettings.size())});
      case 9:
        return library.setWaveName(wave(step), name);
      case 10:
        return library.setWaveTag(library.waves().empty() ? 0 : library.waves().front().id(), value);
      case 11:
        return library.setWaveTempo(library.waves().empty() ? 0 : library.waves().back().id(), value);
      case 12:
        return library.setTagName(pad, name);
      default:
        return library.setKitSubName(kit, name);
    }
  }

  void anyStep(Choices& from) {
    RolandLibrary& library = store_.library;
    const auto dropError = [](const std::exception_ptr&) {};
    const int kind = from.below(16);
    switch (kind) {
      case 0:
        library.createKit(slot(from), from.below(2) == 0);
        return;
      case 1: {
        const Slot gone = slot(from);
        deletedSlots_.insert(gone);
        return library.deleteKit(gone);
      }
      case 2:
        return library.copyPads(slot(from));
      case 3:
        return library.pasteCopiedPads(slot(from));
      case 4:
        return library.importWave(from.below(2) == 0 ? "/home/kick.wav" : "/home/a:b?.wav", "New", from.below(3),
                                  dropError);
      case 5:
        return library.duplicateWave(wave(from), dropError);
      case 6:
        return library.deleteWave(wave(from));
      case 7:
        return library.save(dropError);
      case 8:
        return library.exportKit(slot(from), "/home/exported", dropError);
      case 9:
        return library.undoManager().undo();
      case 10:
        return library.undoManager().redo();
      case 11:
        static_cast<void>(library.waveUsages(wave(from)));
        return;
      case 12:
        store_.jobs.runWork();
        return;
      case 13:
        store_.jobs.deliver();
        return;
      default:
        return edit(from);
    }
  }

  void note(const std::optional<Path>& file) {
    if (file) ours_.insert(file->generic_string());
  }
  /// What a save may write or remove from here on.
  void noteDirty() {
    const RolandLibrary& library = store_.library;
    for (const Kit& kit : library.kits()) {
      if (kit.isDirty) note(cardpaths::kitFile(kit.slot));
    }
    for (const Wave& wave : library.waves()) {
      if (wave.isDirty) note(cardpaths::waveParameterFile(wave.bank, wave.fileNumber));
      if (wave.isPending) note(cardpaths::audioTarget(wave));
    }
    for (const auto& [id, wave] : library.pendingDeletions()) {
      note(cardpaths::waveParameterFile(wave.bank, wave.fileNumber));
      note(cardpaths::audioFile(wave));
      deletedWaves_.insert({wave.bank, wave.fileNumber});
    }
    if (library.tagList()->isDirty) note(cardpaths::tagListFile());
    for (const Path& list :
         {cardpaths::nameIndexFile(), cardpaths::tagNumberIndexFile(), cardpaths::tagNameIndexFile()})
      note(list);
  }
  bool isOurs(const std::string& file) const {
    if (ours_.contains(file)) return true;
    const Path path(file);
    const std::string name = path.filename().native();
    const Path folder = path.parent_path();
    if (folder.parent_path() == cardpaths::waveParameterRoot()) {
      const auto bank = cardpaths::bankOfFolder(folder.filename().native());
      const auto number = cardpaths::numberOfWaveFile(name);
      return bank && number && deletedWaves_.contains({*bank, *number});
    }
    const auto slot = cardpaths::slotOfKitFile(name);
    return folder == cardpaths::kitFolder() && slot && deletedSlots_.contains(*slot);
  }
  void requireOnlyOurs(const Tree& after) const {
    for (const auto& [file, bytes] : before_) {
      const auto there = after.find(file);
      require((there != after.end() && there->second == bytes) || isOurs(file), file + " is as it was");
    }
    for (const auto& [file, bytes] : after)
      require(before_.contains(file) || isOurs(file), file + " has been written for a reason");
  }
  void requireNothingLeftBehind() const {
    for (const std::string& name : store_.files.list(TestStore::root)) {
      const bool isThere = std::ranges::any_of(
          before_, [&](const auto& file) { return file.first == name || file.first.starts_with(name + "/"); });
      require(isThere || name == "KIT" || name == "WAVE", name + " was there before");
    }
  }
  /// Whether each record stands under the name that a save writes, alone under its key, in well-formed text: then what
  /// was in the store is what is read.
  static bool isPlain(const Tree& card) {
    std::set<WaveId> ids;
    for (const auto& [file, bytes] : card) {
      const Path path(file);
      if (path.extension() == ".spd" && naive::decoded(bytes) != bytes) return false;
      const Path folder = path.parent_path();
      const std::string name = path.filename().native();
      if (folder == cardpaths::kitFolder()) {
        if (const auto slot = cardpaths::slotOfKitFile(name); slot && path != cardpaths::kitFile(*slot)) return false;
      } else if (folder.parent_path() == cardpaths::waveParameterRoot()) {
        const auto bank = cardpaths::bankOfFolder(folder.filename().native());
        const auto number = cardpaths::numberOfWaveFile(name);
        if (!bank || !number) continue;
        if (path != cardpaths::waveParameterFile(*bank, *number)) return false;
        if (!ids.insert(waveId(*bank, *number)).second) return false;
      }
    }
    return true;
  }
  void requireSameRecords(const RolandLibrary& again) const {
    const RolandLibrary& library = store_.library;
    require(std::ranges::equal(
                library.kits(), again.kits(),
                [](const Kit& a, const Kit& b) { return a.slot == b.slot && haveSameContent(a.node, b.node); }),
            "the kits are read as they were saved");
    require(std::ranges::equal(
                library.waves(), again.waves(),
                [](const Wave& a, const Wave& b) { return a.id() == b.id() && haveSameContent(a.node, b.node); }),
            "the samples are read as they were saved");
    require(haveSameContent(library.tagList()->node, again.tagList()->node), "so is the tag list");
  }

  Tree before_;
  Choices edits_;
  Choices steps_;
  TestStore store_;
  std::set<std::string> ours_;
  std::set<Slot> deletedSlots_;
  std::set<std::pair<std::int64_t, std::int64_t>> deletedWaves_;  ///< bank and number
};

/// The store's clock and its undo turns want one.
void makeApplication() {
  static int count = 1;
  static char name[] = "fuzz_card";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(count, arguments);
  QStandardPaths::setTestModeEnabled(true);
}

}  // namespace

void tryInput(std::span<const std::uint8_t> input) {
  makeApplication();
  Choices choices(input);
  const Choices edits = choices.split(4 * static_cast<std::size_t>(choices.below(8)));
  const Choices steps = choices.split(4 * static_cast<std::size_t>(choices.below(16)));
  Tree card = test::sampleCard();
  const bool isSound = addFiles(choices.rest(), card);
  if (!canStandTogether(card)) return;
  Session session(card, edits, steps);
  if (!session.open()) return require(session.isUntouched(), "a card that doesn't open stays as it is");
  session.undoableEdits();
  session.anySteps();
  session.saveAndReadAgain(isSound);
}

}  // namespace tamboro::fuzz
