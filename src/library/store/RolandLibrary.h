#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/contents/OpenCard.h"
#include "library/imports/ImportQueue.h"
#include "library/saving/SaveQueue.h"
#include "library/store/LibraryServices.h"
#include "library/store/PublishedState.h"
#include "model/WaveUsage.h"
#include "platform/UndoManager.h"

namespace tamboro {

/// The one store of the open card: every screen reads from it and every edit goes through one of its operations.
/// Imports and saves run in queues of their own behind it. Main thread only. An operation that doesn't find its key
/// changes nothing and reports nothing. Texts are UTF-8.
class RolandLibrary : public QObject {
  Q_OBJECT

 public:
  using ExportResult = tamboro::ExportResult;
  /// Called once on the main thread with the failure or with nothing; for a call that is refused at once, before the
  /// call returns.
  using Completion = std::function<void(std::exception_ptr error)>;
  using Property = LibraryProperty;
  using ChangedFiles = tamboro::ChangedFiles;

  static const QString bookmarkKey, recentKitsKey, autoSaveEnabledKey, autoSaveIntervalKey, backupBeforeSaveKey;
  static constexpr std::size_t maxRecentKits = 5;

  explicit RolandLibrary(const LibraryServices& services, QObject* parent = nullptr);

  // What is published.
  const std::vector<Kit>& kits() const { return card_.kits; }
  const std::vector<Wave>& waves() const { return card_.waves; }
  const std::optional<TagList>& tagList() const { return card_.tagList; }
  bool isLoaded() const { return card_.root.has_value(); }
  bool isExporting() const { return saves_.isRunning(); }
  /// Of the save that runs; null while none does. It isn't published: who shows it asks from time to time.
  const SaveProgress* saveProgress() const { return saves_.progress(); }
  const std::optional<QString>& lastError() const { return state_.lastError; }
  /// What helps with the last error: which file of the card it was and whether the backup has it. Empty where nothing
  /// more is known.
  const QString& lastErrorDetail() const { return state_.lastErrorDetail; }
  const std::optional<QString>& rootPath() const { return state_.rootPath; }
  const std::map<WaveId, Wave>& pendingDeletions() const { return card_.pendingDeletions; }
  /// How far the sounds of panels and drops are; those that were asked for one by one are not among them.
  const ImportBatch& imports() const { return imports_.batch(); }
  const std::optional<std::map<int, Pad>>& copiedPads() const { return state_.copiedPads; }
  std::optional<WaveId> copiedWaveIndex() const { return state_.copiedWaveIndex; }
  std::optional<Slot> selectedKitSlot() const { return state_.selectedKitSlot; }
  int selectedPadIndex() const { return state_.selectedPadIndex; }
  const std::vector<Slot>& recentKitSlots() const { return state_.recentKitSlots; }
  bool autoSaveEnabled() const { return state_.autoSaveEnabled; }
  double autoSaveInterval() const { return state_.autoSaveInterval; }
  bool backupBeforeSaveEnabled() const { return state_.backupBeforeSaveEnabled; }
  bool showingShortcutsHelp() const { return state_.showingShortcutsHelp; }
  /// What saves that were cut had left on the card when it was read.
  const Leftovers& leftovers() const { return state_.leftovers; }
  void setCopiedWaveIndex(std::optional<WaveId> id);
  void setSelectedKitSlot(std::optional<Slot> slot);
  void setSelectedPadIndex(int index);
  void setAutoSaveEnabled(bool on);
  void setAutoSaveInterval(double seconds);
  void setBackupBeforeSaveEnabled(bool on);
  void setShowingShortcutsHelp(bool on);

  // Reading.
  bool hasUnsavedChanges() const { return card_.hasUnsavedChanges(); }
  const Kit* kit(Slot slot) const { return card_.kit(slot); }
  const Kit* selectedKit() const;
  std::optional<Pad> selectedPad() const;
  const Wave* selectedWave() const;
  const Wave* wave(WaveId id) const { return card_.wave(id); }
  std::string relativeAudioPath(const Wave& wave) const { return wave.relativeAudioPath(); }
  std::optional<Path> audioURL(const Wave& wave) const { return card_.audioFile(wave); }
  const std::optional<Path>& rootURL() const { return card_.root; }
  const Path& defaultBackupDestination() const { return services_.backupDestination; }
  void setBackupDestinationOverride(std::optional<Path> folder) { backupDestinationOverride_ = std::move(folder); }
  UndoManager& undoManager() { return undoManager_; }

  // Opening a card. The first four report through `lastError`; `load` throws. Each waits for the saves that were asked
  // for. `failed` is called behind `lastError` where the chosen folder didn't open.
  void chooseRoot(std::function<void()> failed = {});
  void readAgain();
  void restoreFromBookmark();
  void openDroppedFolder(const Path& location);
  void load(const Path& location);
  std::optional<Path> resolveRoot(const Path& location) const;

  // Saving and exporting: one save at a time, a later call waits and then saves what is still unsaved.
  void save(Completion done, ChangedFiles changed = ChangedFiles::refuse) { saves_.save(std::move(done), changed); }
  void exportKit(Slot slot, const Path& destination, Completion done);
  void recordRecentKit(Slot slot);

  // Kits. Those up to exchangePads are undoable as "Kit Change".
  void setKitLevel(Slot slot, double value);
  void setKitTempo(Slot slot, double bpm);
  void setKitName(Slot slot, const std::string& name);
  void setKitSubName(Slot slot, const std::string& name);
  void setFxSwitch(Slot slot, int unit, bool on);
  void setFxType(Slot slot, int unit, std::int64_t type);
  void setFxParam(Slot slot, int unit, int parameter, std::int64_t value);
  void exchangePads(Slot slot, int a, int b);
  std::optional<Slot> createKit(Slot source, bool blank);
  std::optional<Slot> createBlankKit();
  std::optional<Slot> nextFreeKitSlot() const;
  void copyPads(Slot slot);
  void pasteCopiedPads(Slot slot, const std::optional<std::vector<int>>& indices = std::nullopt);
  void deleteKit(Slot slot);

  // Pads, undoable as "Pad Change".
  void setPadSound(Slot slot, int pad, WaveId id);
  void removePadSound(Slot slot, int pad);
  void resetPad(Slot slot, int pad);
  void setPadLevel(Slot slot, int pad, double value);
  void setPadPan(Slot slot, int pad, double value);
  void setPadSubLevel(Slot slot, int pad, double value);
  void setPadSubPan(Slot slot, int pad, double value);
  void setPadNote(Slot slot, int pad, std::int64_t note);
  void setPadPoly(Slot slot, int pad, bool poly);
  /// Any setting, cut to the range of its leaf.
  void setPadInteger(Slot slot, int pad, const PadSetting& setting, std::int64_t value);
  void setPadFlag(Slot slot, int pad, const PadSetting& setting, bool on);
  void updatePad(Slot slot, int pad, const std::function<void(Pad&)>& change);
  /// Those of the chosen settings that can be applied to all pads.
  void applySettingsToAllPads(Slot slot, int source, const std::set<const PadSetting*>& chosen);

  // Samples. The setters are undoable as "Sound Change". `ImportQueue` tells of the imports.
  void importWave(const Path& source, const std::string& name, std::int64_t tag, Completion done);
  void importSounds(std::vector<SoundSource> sources, std::int64_t tag) { imports_.addBatch(std::move(sources), tag); }
  void dropWaitingImports() { imports_.dropWaiting(); }
  void duplicateWave(WaveId id, Completion done);
  void deleteWave(WaveId id);
  std::vector<WaveUsage> waveUsages(WaveId id) const;
  void setWaveTag(WaveId id, std::int64_t value);
  void setWaveTempo(WaveId id, std::int64_t value);
  void setWaveBeat(WaveId id, std::int64_t value);
  void setWaveStart(WaveId id, std::int64_t value);
  void setWaveEnd(WaveId id, std::int64_t value);
  void setWaveName(WaveId id, const std::string& name);

  // Tags, undoable as "Tag Change".
  void setTagName(int tag, const std::string& name);

 Q_SIGNALS:
  /// A published property has changed.
  void published(tamboro::RolandLibrary::Property property);

 private:
  // The one edit routine and the kinds of record it serves; RolandLibrary_edit.h.
  struct KitRecord;
  struct PadRecord;
  struct PadsRecord;
  struct WaveRecord;
  struct TagListRecord;
  template<class Record, class Change>
  std::optional<typename Record::Value> change(const typename Record::Key& key, const Change& change);
  template<class Record, class Change>
  void edit(const typename Record::Key& key, const Change& change);
  template<class Record>
  void restore(const typename Record::Key& key, const typename Record::Value& snapshot);
  template<class Record>
  void registerRestore(const typename Record::Key& key, typename Record::Value snapshot);
  void editWaveLeaf(WaveId id, const elements::IntegerLeaf& leaf, std::int64_t value);

  template<class Value>
  void publish(Value& field, Value value, Property property) {
    if (field == value) return;
    field = std::move(value);
    Q_EMIT published(property);
  }
  void tryLoad(const Path& location);
  QString detailOf(const std::exception_ptr& error) const;
  void startAutoSaveTimer();
  void autoSaveTick();

  LibraryServices services_;
  OpenCard card_;
  RecordLives lives_;
  StagingFolder staging_;
  ImportQueue imports_;
  SaveQueue saves_;
  UndoManager undoManager_;
  std::unique_ptr<RepeatingTimer> autoSaveTimer_;
  PublishedState state_;
  std::optional<Path> backupDestinationOverride_;
};

}  // namespace tamboro
