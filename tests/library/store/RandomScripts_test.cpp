#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "library/store/CardModel.h"
#include "support/TestStore.h"

// Seeded scripts of mixed operations run against the store and against a model of the card that shares no code with
// it. After every step both must tell the same about what is there, unsaved and undoable; in the end a save must leave
// the card that the model predicts.
namespace tamboro::test {
namespace {

class Script {
 public:
  explicit Script(unsigned seed) : random_(seed), model_(sampleCard(), files) {
    store_.open();
    for (const auto& [name, bytes] : files)
      writeFile(store_.files, "/home/" + name, bytes);
    folders_ = readFolders(store_.files, TestStore::root);
  }

  void run() {
    const int steps = 20 + number(60);
    for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
      step();
      expectSame();
    }
    setReadOnly(false);
    while (work() || deliver()) {
    }
    save();
    while (work() || deliver()) {
    }
    expectSame();
    EXPECT_FALSE(store_.library.hasUnsavedChanges());
    EXPECT_EQ(model_.differenceOf(store_.card()), "");
    EXPECT_EQ(readFolders(store_.files, TestStore::root), folders_);
    reload();
    expectSame();
  }

 private:
  static inline const Tree files = {
      {"kick.wav", "1"}, {"Kick.wav", "2"}, {"snare.wav", "3"}, {"noext", "4"}, {"a:b?.wav", "5"}};

  int number(int below) { return std::uniform_int_distribution(0, below - 1)(random_); }
  template<class Keys>
  int oneOf(const Keys& keys) {
    // Now and then a key that nothing has.
    if (keys.empty() || number(20) == 0) return 77;
    return static_cast<int>(*std::next(keys.begin(), number(static_cast<int>(keys.size()))));
  }
  int kit() { return oneOf(model_.slots()); }
  int wave() { return oneOf(model_.waveIds()); }
  int pad() { return number(16); }
  std::string name() {
    static const std::vector<std::string> names{"", "Kick", "kick", "Zoe", "a longer name than cells", "Snare"};
    return names[static_cast<std::size_t>(number(static_cast<int>(names.size())))];
  }

  void step() {
    switch (number(14)) {
      case 0:
      case 1:
      case 2:
      case 3:
        for (int edits = 1 + number(2); edits > 0; --edits)
          edit();
        break;
      case 4:
        store_.library.undoManager().undo();
        model_.undo();
        break;
      case 5:
        if (number(2) == 0) return undoAndRedo();
        store_.library.undoManager().redo();
        model_.redo();
        break;
      case 6:
      case 7:
        samples();
        break;
      case 8:
        kits();
        break;
      case 9:
        save();
        break;
      case 10:
        if (number(4) == 0) return reload();
        if (number(3) == 0) return setReadOnly(number(2) == 0);
        exportKit();
        break;
      default:
        for (int jobs = 1 + number(4); jobs > 0; --jobs)
          number(2) == 0 ? work() : deliver();
    }
    store_.library.undoManager().endTurn();
    model_.endTurn();
  }

  void undoAndRedo() {
    store_.library.undoManager().undo();
    store_.library.undoManager().redo();
    model_.undo();
    model_.redo();
  }

  void edit() {
    RolandLibrary& library = store_.library;
    const int slot = kit();
    const int id = wave();
    const int index = pad();
    const int value = number(3);
    const std::string text = name();
    switch (number(10)) {
      case 0:
        library.setKitLevel(slot, value);
        return model_.editKit(slot, [&](Element& kit) { kit.set("Level", value); });
      case 1:
        library.setKitName(slot, text);
        return model_.editKit(slot, [&](Element& kit) { kit.setCells("Nm", 8, text); });
      case 2:
        library.setFxParam(slot, 2, value, 5);
        return model_.editKit(slot, [&](Element& kit) { kit.set("Fx2Prm" + std::to_string(value), 5); });
      case 3:
        library.exchangePads(slot, index, value);
        return model_.editKit(slot, [&](Element& kit) { kit.exchange("PadPrm", index, value); });
      case 4:
        library.setPadSound(slot, index, id);
        return model_.editPad(slot, index, [&](Element& pad) { pad.set("Wv", id); });
      case 5:
        library.setPadSubPan(slot, index, value);
        return model_.editPad(slot, index, [&](Element& pad) { pad.set("SubWvPan", value); });
      case 6:
        library.setWaveTempo(id, value);
        return model_.editWave(id, [&](Element& wave) { wave.set("Tempo", value); });
      case 7:
        library.setWaveName(id, text);
        return model_.editWave(id, [&](Element& wave) { wave.setCells("Nm", 12, text); });
      case 8:
        library.setWaveTag(id, value);
        return model_.editWave(id, [&](Element& wave) { wave.set("Tag", value); });
      default:
        library.setTagName(value, text);
        return model_.setTagName(value, text);
    }
  }

  void samples() {
    const int id = wave();
    if (number(5) < 2) {
      store_.library.deleteWave(id);
      model_.deleteWave(id);
    } else if (number(3) == 0) {
      store_.library.duplicateWave(id, [](const std::exception_ptr&) {});
      model_.duplicateWave(id);
    } else {
      const std::string source = std::next(files.begin(), number(static_cast<int>(files.size())))->first;
      const std::string text = name();
      store_.library.importWave("/home/" + source, text, 1, [](const std::exception_ptr&) {});
      model_.importWave("/home/" + source, text, 1);
    }
  }

  void kits() {
    const int slot = kit();
    switch (number(5)) {
      case 0:
        store_.library.deleteKit(slot);
        return model_.deleteKit(slot);
      case 1:
        store_.library.copyPads(slot);
        return model_.copyPads(slot);
      case 2:
        store_.library.pasteCopiedPads(slot);
        return model_.pastePads(slot);
      default: {
        const bool blank = number(2) == 0;
        const auto made = store_.library.createKit(slot, blank);
        EXPECT_EQ(made.value_or(-1), model_.createKit(slot, blank));
      }
    }
  }

  void save() {
    store_.library.save([](const std::exception_ptr&) {});
    model_.save();
  }

  void exportKit() {
    const int slot = kit();
    const std::string folder = "/home/exported" + std::to_string(exports_++);
    const auto failed = std::make_shared<bool>(false);
    store_.library.exportKit(slot, folder, [failed](const std::exception_ptr& e) { *failed = e != nullptr; });
    model_.exportKit(slot, [this, folder, failed](const ModelTree* expected) {
      EXPECT_EQ(*failed, expected == nullptr);
      EXPECT_EQ(expected == nullptr ? "" : differenceOf(*expected, readTree(store_.files, folder)), "");
    });
  }

  void reload() {
    store_.library.load("/media/card");
    model_.waitForSave();
    const Tree card = store_.card();
    EXPECT_EQ(model_.differenceOf(card), "");
    model_.load(card);
  }

  void setReadOnly(bool on) {
    store_.files.setVolume("/media/card", {"fat:1234-ABCD", {1U << 30U, 4096}, on});
    model_.readOnly = on;
  }

  // The store's jobs and the model's are run side by side; the store's first, so that the model can look at its end.
  bool work() {
    const bool ran = store_.jobs.runWork();
    EXPECT_EQ(ran, model_.jobs.runWork());
    return ran;
  }
  bool deliver() {
    const bool ran = store_.jobs.deliver();
    EXPECT_EQ(ran, model_.jobs.deliver());
    return ran;
  }

  void expectSame() {
    const RolandLibrary& library = store_.library;
    std::set<std::int64_t> slots;
    std::set<std::int64_t> ids;
    std::set<std::int64_t> pending;
    for (const Kit& kit : library.kits())
      slots.insert(kit.slot);
    for (const Wave& wave : library.waves()) {
      ids.insert(wave.id());
      if (wave.isPending) pending.insert(wave.id());
    }
    EXPECT_EQ(slots, model_.slots());
    EXPECT_EQ(ids, model_.waveIds());
    EXPECT_EQ(pending, model_.pendingIds());
    EXPECT_EQ(library.hasUnsavedChanges(), model_.hasUnsavedChanges());
    EXPECT_EQ(store_.library.undoManager().canUndo(), model_.canUndo());
    EXPECT_EQ(store_.library.undoManager().canRedo(), model_.canRedo());
  }

  std::mt19937 random_;
  TestStore store_;
  CardModel model_;
  std::vector<std::string> folders_;
  int exports_ = 0;
};

TEST(RandomScripts, EndInTheCardThatTheModelPredicts) {
  constexpr unsigned scripts = 250;
  for (unsigned seed = 1; seed <= scripts && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Script(seed).run();
  }
}

}  // namespace
}  // namespace tamboro::test
