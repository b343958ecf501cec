// A whole card in memory: loaded, edited, undone, saved whatever fails, loaded again. An input is a byte that counts
// the edits, four bytes for each, the same for other steps, and then files: 0x1E, a name below the card's root, a line
// feed, the bytes. They replace files of the small card or stand beside them; one whose name begins with "-" is taken
// away.

#include <QCoreApplication>
#include <QStandardPaths>
#include <algorithm>
#include <functional>
#include <set>
#include <tuple>

#include "card/SpdDocument.h"
#include "card/Utf8.h"
#include "fuzz/Fuzzing.h"
#include "library/CardPaths.h"
#include "support/TestStore.h"

namespace tamboro::fuzz {
namespace {

using test::TestStore;
using test::Tree;

/// Whether it names a file below the card's root, and none that is a folder of another's or below another.
bool fits(const std::string& name, const Tree& card) {
  const Path path(name);
  if (name.find('\0') != std::string::npos || path.is_absolute() || !path.has_filename() || name == "." ||
      path.lexically_normal().native() != name || *path.begin() == "..")
    return false;
  return std::ranges::none_of(
      card, [&](const auto& file) { return name.starts_with(file.first + "/") || file.first.starts_with(name + "/"); });
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
    } else if (fits(name, card)) {
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

/// The name that a save writes for the record that is read from a file; nothing where none is.
std::optional<Path> ownName(const Path& file) {
  const std::string name = file.filename().native();
  if (file.parent_path() == cardpaths::kitFolder()) {
    const auto slot = cardpaths::slotOfKitFile(name);
    return slot ? std::optional(cardpaths::kitFile(*slot)) : std::nullopt;
  }
  if (file.parent_path().parent_path() != cardpaths::waveParameterRoot()) return std::nullopt;
  const auto bank = cardpaths::bankOfFolder(file.parent_path().filename().native());
  const auto number = cardpaths::numberOfWaveFile(name);
  return bank && number ? std::optional(cardpaths::waveParameterFile(*bank, *number)) : std::nullopt;
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
    test::writeTree(store_.files, "/home", sources);
    return true;
  }
  bool isUntouched() { return test::readTree(store_.files, TestStore::root) == before_; }

  void undoableEdits(bool isSound) {
    RolandLibrary& library = store_.library;
    const State opened = state();
    while (!edits_.isEmpty())
      store_.turn([&] { edit(edits_); });
    noteDirty();
    const State edited = state();
    if (isSound) store_.save();
    while (library.undoManager().canUndo())
      library.undoManager().undo();
    require(state() == opened, "undoing all leads back to what was opened");
    if (isSound) {
      require(store_.save().empty(), "that can be saved");
      const Tree after = test::withoutIndexes(store_.card());
      const Tree before = test::withoutIndexes(before_);
      require(after == before, "it is saved byte for byte:\n" + test::difference(before, after));
    }
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
    runJobs();
    requireNoHalves();
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
    if (!wasPulled_) requireNothingLeftBehind();
    TestStore again;
    again.mountCard("fat:1234-ABCD", after);
    for (const char* folder : {"KIT", "WAVE", "SYSTEM"})
      makeFolders(again.files, TestStore::root / folder);
    again.library.load("/media/card");
    if (isPlain(after)) requireSameRecords(again.library);
    require(again.save().empty(), "it can be saved again");
    // An edited sample that was read under another name is on the card twice now, and twice in the lists of the next
    // save.
    const bool hasOneFileEach = isPlain(after);
    const Tree first = hasOneFileEach ? after : test::withoutIndexes(after);
    const Tree twice = hasOneFileEach ? again.card() : test::withoutIndexes(again.card());
    require(twice == first, "a save of nothing changes nothing:\n" + test::difference(first, twice));
  }

 private:
  static inline const Tree sources = {{"kick.wav", "1"}, {"Kick.wav", "3"}, {"a:b?.wav", "2"}};

  using State = std::tuple<std::vector<SpdNode>, std::vector<SpdNode>, SpdNode>;

  State state() const {
    State all{{}, {}, store_.library.tagList()->node};
    std::ranges::transform(store_.library.kits(), std::back_inserter(std::get<0>(all)), &Kit::node);
    std::ranges::transform(store_.library.waves(), std::back_inserter(std::get<1>(all)), &Wave::node);
    return all;
  }
  Slot slot(int choice) const {
    const auto& kits = store_.library.kits();
    return kits.empty() ? 7 : kits[static_cast<std::size_t>(choice) % kits.size()].slot;
  }
  WaveId wave(int choice) const {
    const auto& waves = store_.library.waves();
    return waves.empty() ? 207 : waves[static_cast<std::size_t>(choice) % waves.size()].id();
  }

  void edit(Choices& from) {
    RolandLibrary& to = store_.library;
    Choices step = from.split(4);
    const int kind = step.below(14);
    const Slot kit = slot(step.byte());
    const int value = step.byte();
    const int pad = step.below(17) - 1;
    const std::string name(static_cast<std::size_t>(value % 20), static_cast<char>('A' + pad));
    const WaveId sample = wave(value);
    const auto number = static_cast<std::size_t>(value);
    const std::set<const PadSetting*> settings = {&padSettings.at(number % padSettings.size()),
                                                  &padSettings.at(number / padSettings.size())};
    const std::function<void()> edits[] = {
        [&] { to.setKitLevel(kit, value); },
        [&] { to.setKitName(kit, name); },
        [&] { to.setKitTempo(kit, value / 7.0); },
        [&] { to.setFxParam(kit, 1 + value % 2, pad, value); },
        [&] { to.exchangePads(kit, pad, value % 17 - 1); },
        [&] { to.setPadSound(kit, pad, value); },
        [&] { to.resetPad(kit, pad); },
        [&] { to.setPadSubPan(kit, pad, value); },
        [&] { to.applySettingsToAllPads(kit, pad, settings); },
        [&] { to.setWaveName(sample, name); },
        [&] { to.setWaveTag(sample, value); },
        [&] { to.setWaveTempo(sample, value); },
        [&] { to.setTagName(pad, name); },
        [&] { to.setKitSubName(kit, name); },
    };
    edits[kind]();
  }

  void anyStep(Choices& from) {
    RolandLibrary& to = store_.library;
    const auto dropError = [](const std::exception_ptr&) {};
    const int kind = from.below(18);
    Choices own = from;  // an edit's four
    const int choice = from.byte();
    const Slot kit = slot(choice);
    const bool isFirst = from.below(2) == 0;
    const std::function<void()> steps[] = {
        [&] { to.createKit(kit, isFirst); },
        [&] {
          deleted_.insert(cardpaths::kitFile(kit));
          to.deleteKit(kit);
        },
        [&] { to.copyPads(kit); },
        [&] { to.pasteCopiedPads(kit); },
        [&] { to.importWave(choice % 2 == 0 ? "/home/kick.wav" : "/home/a:b?.wav", "New", choice % 3, dropError); },
        [&] { to.duplicateWave(wave(choice), dropError); },
        [&] { to.deleteWave(wave(choice)); },
        [&] { to.save(dropError); },
        [&] { to.exportKit(kit, "/home/exported", dropError); },
        [&] { to.undoManager().undo(); },
        [&] { to.undoManager().redo(); },
        [&] { static_cast<void>(to.waveUsages(wave(choice))); },
        [&] { store_.jobs.runWork(); },
        [&] { store_.jobs.deliver(); },
        [&] { edit(own); },
        [&] { edit(own); },
        [&] { failingSave(own); },
        [&] { readAgain(); },
    };
    steps[kind]();
  }

  /// One by one: what a job adds can be saved by the next.
  void runJobs() {
    while (store_.jobs.runWork() || store_.jobs.deliver())
      noteDirty();
  }
  /// One of its file operations fails, or that one and all behind it: the card has been pulled.
  void failingSave(Choices& from) {
    runJobs();
    store_.library.save([](const std::exception_ptr&) {});
    const bool isPulled = from.below(2) == 0;
    const auto number = static_cast<std::uint64_t>(from.byte() * 2 + 1);
    isPulled ? store_.files.failFrom(number) : store_.files.failAt(number);
    store_.jobs.runAll();
    store_.files.failNothing();
    wasPulled_ |= isPulled;
    requireNoHalves();
  }
  void readAgain() {
    try {
      store_.library.load("/media/card");
    } catch (const std::exception&) {
      // What stays open is edited on.
    }
  }

  void note(const std::optional<Path>& file) {
    if (file) ours_.insert(*file);
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
      note(cardpaths::audioFile(wave));
      deleted_.insert(cardpaths::waveParameterFile(wave.bank, wave.fileNumber));
    }
    if (library.tagList()->isDirty) note(cardpaths::tagListFile());
    for (const auto list : {cardpaths::nameIndexFile, cardpaths::tagNumberIndexFile, cardpaths::tagNameIndexFile})
      note(list());
  }
  bool isOurs(const Path& file) const {
    const auto own = ownName(file);
    return ours_.contains(file) || (own && deleted_.contains(*own));
  }
  void requireOnlyOurs(const Tree& after) const {
    for (const auto& [file, bytes] : before_) {
      const auto there = after.find(file);
      require((there != after.end() && there->second == bytes) || isOurs(file), file + " is as it was");
    }
    for (const auto& [file, bytes] : after) {
      const bool isLeft = wasPulled_ && file.find(".tamboro-") != std::string::npos;
      require(before_.contains(file) || isOurs(file) || isLeft, file + " has been written for a reason");
    }
  }
  /// Whatever was written is whole.
  void requireNoHalves() const {
    const auto holds = [](const Tree& tree, const std::string& bytes) {
      return std::ranges::any_of(tree, [&](const auto& file) { return file.second == bytes; });
    };
    for (const auto& [file, bytes] : store_.card()) {
      if (file.find(".tamboro-") != std::string::npos || holds(before_, bytes) || holds(sources, bytes)) continue;
      require(file.ends_with(".spd"), file + " is whole");
      static_cast<void>(SpdDocument::parse(bytes));
    }
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
    return std::ranges::all_of(card, [](const auto& file) {
      const Path path(file.first);
      const auto own = ownName(path);
      const bool isLongNumber = path.stem().native().size() == 3;  // its id is another bank's as well
      return (path.extension() != ".spd" || utf8::isWellFormed(file.second)) &&
             (!own || (*own == path && !isLongNumber));
    });
  }
  void requireSameRecords(const RolandLibrary& again) const {
    const RolandLibrary& library = store_.library;
    const auto haveSame = [](const auto& a, const auto& b) { return haveSameContent(a.node, b.node); };
    require(std::ranges::equal(library.kits(), again.kits(), {}, &Kit::slot, &Kit::slot) &&
                std::ranges::equal(library.kits(), again.kits(), haveSame),
            "the kits are read as they were saved");
    require(std::ranges::equal(library.waves(), again.waves(), {}, &Wave::id, &Wave::id) &&
                std::ranges::equal(library.waves(), again.waves(), haveSame),
            "the samples are read as they were saved");
    require(haveSame(*library.tagList(), *again.tagList()), "so is the tag list");
  }

  Tree before_;
  Choices edits_;
  Choices steps_;
  TestStore store_;
  bool wasPulled_ = false;
  std::set<Path> ours_;
  std::set<Path> deleted_;  // records, under whatever name each was read
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
  const Choices steps = choices.split(4 * static_cast<std::size_t>(choices.below(64)));
  Tree card = test::sampleCard();
  const bool isSound = addFiles(choices.rest(), card);
  Session session(card, edits, steps);
  if (!session.open()) return require(session.isUntouched(), "a card that doesn't open stays as it is");
  session.undoableEdits(isSound);
  session.anySteps();
  session.saveAndReadAgain(isSound);
}

}  // namespace tamboro::fuzz
