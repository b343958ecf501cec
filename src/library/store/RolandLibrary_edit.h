#pragma once

// The edit mechanism, for the store's own sources only. Every undoable edit of the program is one call of `edit`, and a
// kind of record differs from the others only in what stands in its struct here.

#include <algorithm>
#include <utility>

#include "library/store/RolandLibrary.h"

namespace tamboro {

struct RolandLibrary::KitRecord {
  using Value = Kit;
  struct Key {
    Slot slot;
  };
  static constexpr Property property = Property::kits;
  static QString actionName() { return QStringLiteral("Kit Change"); }
  static RecordLives::Life life(const RolandLibrary& store, const Key& key) {
    return store.lives_.life(RecordLives::Kind::kit, key.slot);
  }
  static std::optional<Kit> read(const RolandLibrary& store, const Key& key) {
    const Kit* kit = store.kit(key.slot);
    return kit ? std::optional(*kit) : std::nullopt;
  }
  static Kit restored(const RolandLibrary&, const Key&, const Kit& snapshot) { return snapshot; }
  static void write(RolandLibrary& store, const Key& key, Kit value) {
    value.isDirty = true;
    *store.card_.kit(key.slot) = std::move(value);
  }
};

struct RolandLibrary::PadRecord {
  using Value = Pad;
  struct Key {
    Slot slot;
    int index;
  };
  static constexpr Property property = Property::kits;
  static QString actionName() { return QStringLiteral("Pad Change"); }
  static RecordLives::Life life(const RolandLibrary& store, const Key& key) {
    return store.lives_.life(RecordLives::Kind::kit, key.slot);
  }
  static std::optional<Pad> read(const RolandLibrary& store, const Key& key) {
    const Kit* kit = store.kit(key.slot);
    return kit ? kit->pad(key.index) : std::nullopt;
  }
  static Pad restored(const RolandLibrary&, const Key&, const Pad& snapshot) { return snapshot; }
  static void write(RolandLibrary& store, const Key& key, const Pad& value) {
    Kit& kit = *store.card_.kit(key.slot);
    kit.node.replaceChild(elements::pad, static_cast<std::size_t>(key.index), value.node);
    kit.isDirty = true;
  }
};

/// Several pads of a kit as one, for edits of many: pad by pad each would be counted from the first.
struct RolandLibrary::PadsRecord {
  using Value = std::vector<Pad>;
  struct Key {
    Slot slot;
    std::vector<int> indexes;  // ascending, each a pad of the kit
  };
  static constexpr Property property = PadRecord::property;
  static QString actionName() { return PadRecord::actionName(); }
  static RecordLives::Life life(const RolandLibrary& store, const Key& key) {
    return store.lives_.life(RecordLives::Kind::kit, key.slot);
  }
  static std::optional<Value> read(const RolandLibrary& store, const Key& key) {
    const Kit* kit = store.kit(key.slot);
    if (!kit) return std::nullopt;
    Value pads = kit->pads();
    std::erase_if(pads, [&](const Pad& pad) { return !std::ranges::binary_search(key.indexes, pad.index); });
    return pads;
  }
  static Value restored(const RolandLibrary&, const Key&, const Value& snapshot) { return snapshot; }
  static void write(RolandLibrary& store, const Key& key, const Value& value) {
    Kit& kit = *store.card_.kit(key.slot);
    kit.applyPads(value);
    kit.isDirty = true;
  }
};

struct RolandLibrary::WaveRecord {
  using Value = Wave;
  struct Key {
    WaveId id;
  };
  static constexpr Property property = Property::waves;
  static QString actionName() { return QStringLiteral("Sound Change"); }
  static RecordLives::Life life(const RolandLibrary& store, const Key& key) {
    return store.lives_.life(RecordLives::Kind::wave, key.id);
  }
  static std::optional<Wave> read(const RolandLibrary& store, const Key& key) {
    const Wave* wave = store.wave(key.id);
    return wave ? std::optional(*wave) : std::nullopt;
  }
  /// A save between the edit and its undo has put the audio on the card: then the sample is no longer pending.
  static Wave restored(const RolandLibrary& store, const Key& key, Wave snapshot) {
    snapshot.isPending = snapshot.isPending && store.card_.stagedAudioFiles.contains(key.id);
    return snapshot;
  }
  static void write(RolandLibrary& store, const Key& key, Wave value) {
    value.isDirty = true;
    *store.card_.wave(key.id) = std::move(value);
  }
};

struct RolandLibrary::TagListRecord {
  using Value = TagList;
  struct Key {};
  static constexpr Property property = Property::tagList;
  static std::optional<TagList> read(const RolandLibrary& store, const Key&) { return store.card_.tagList; }
  static void write(RolandLibrary& store, const Key&, TagList value) {
    value.isDirty = true;
    store.card_.tagList = std::move(value);
  }
};

/// Changes a working copy of the record and, if that differs, puts it back and marks it dirty. Returns the record as
/// it was before, or nothing where nothing changed.
template<class Record, class Change>
std::optional<typename Record::Value> RolandLibrary::change(const typename Record::Key& key, const Change& change) {
  auto before = Record::read(*this, key);
  if (!before) return std::nullopt;
  typename Record::Value after = *before;
  change(after);
  if (after == *before) return std::nullopt;
  Record::write(*this, key, std::move(after));
  return before;
}

template<class Record, class Change>
void RolandLibrary::edit(const typename Record::Key& key, const Change& change) {
  auto before = this->change<Record>(key, change);
  if (!before) return;
  registerRestore<Record>(key, std::move(*before));
  Q_EMIT published(Record::property);
}

/// What an undo runs: it has the shape of an edit, and that gives the redo.
template<class Record>
void RolandLibrary::restore(const typename Record::Key& key, const typename Record::Value& snapshot) {
  edit<Record>(key, [&](typename Record::Value& value) { value = Record::restored(*this, key, snapshot); });
}

template<class Record>
void RolandLibrary::registerRestore(const typename Record::Key& key, typename Record::Value snapshot) {
  undoManager_.registerUndo(
      [this, key, snapshot = std::move(snapshot), card = lives_.card(), life = Record::life(*this, key)] {
        if (lives_.card() == card && Record::life(*this, key) == life) restore<Record>(key, snapshot);
      });
  undoManager_.setActionName(Record::actionName());
}

}  // namespace tamboro
