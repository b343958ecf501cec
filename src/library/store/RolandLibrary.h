#pragma once

#include <QObject>
#include <QString>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/reading/Leftovers.h"
#include "library/saving/SaveJob.h"
#include "library/store/RecordLives.h"
#include "model/WaveUsage.h"
#include "platform/BackgroundJobs.h"
#include "platform/Defaults.h"
#include "platform/FolderPanel.h"
#include "platform/RepeatingTimer.h"
#include "platform/UndoManager.h"

namespace tamboro {

/// What the store needs of the desktop; all outlive it.
struct LibraryServices {
  FileSystem& files;
  Defaults& defaults;
  BackgroundJobs& jobs;
  Timers& timers;
  FolderPanel& folderPanel;
  Path stagingDir;         ///< `tamboro/staging` below the user's generic data folder
  Path backupDestination;  ///< "Tamboro Backup" in the user's Documents folder
};

/// The one store of the open card: every screen reads from it and every edit goes through one of its operations. Main
/// thread only. An operation that doesn't find its key changes nothing and reports nothing. Texts are UTF-8.
class RolandLibrary : public QObject {
  Q_OBJECT

 public:
  using ExportResult = tamboro::ExportResult;
  /// Called once on the main thread with the failure or with nothing; for a call that is refused at once, before the
  /// call returns.
  using Completion = std::function<void(std::exception_ptr error)>;

  enum class Property {
    kits,
    waves,
    tagList,
    isLoaded,
    isExporting,
    lastError,  // and lastErrorDetail
    rootPath,
    pendingDeletions,
    copiedPads,
    copiedWaveIndex,
    selectedKitSlot,
    selectedPadIndex,
    recentKitSlots,
    autoSaveEnabled,
    autoSaveInterval,
    backupBeforeSaveEnabled,
    showingShortcutsHelp
  };

  /// What a save does where files that it would replace have been changed by others since they were read.
  enum class ChangedFiles { refuse, replace };

  static const QString bookmarkKey, recentKitsKey, autoSaveEnabledKey, autoSaveIntervalKey, backupBeforeSaveKey;
  static constexpr std::size_t maxRecentKits = 5;

  explicit RolandLibrary(const LibraryServices& services, QObject* parent = nullptr);
  ~RolandLibrary() override;

  // What is published.
  const std::vector<Kit>& kits() const { return kits_; }
  const std::vector<Wave>& waves() const { return waves_; }
  const std::optional<TagList>& tagList() const { return tagList_; }
  bool isLoaded() const { return isLoaded_; }
  bool isExporting() const { return isExporting_; }
  /// Of the save that runs; null while none does. It isn't published: who shows it asks from time to time.
  const SaveProgress* saveProgress() const { return running_ ? &running_->progress : nullptr; }
  const std::optional<QString>& lastError() const { return lastError_; }
  /// What helps with the last error: which file of the card it was and whether the backup has it. Empty where nothing
  /// more is known.
  const QString& lastErrorDetail() const { return lastErrorDetail_; }
  const std::optional<QString>& rootPath() const { return rootPath_; }
  const std::map<WaveId, Wave>& pendingDeletions() const { return pendingDeletions_; }
  const std::optional<std::map<int, Pad>>& copiedPads() const { return copiedPads_; }
  std::optional<WaveId> copiedWaveIndex() const { return copiedWaveIndex_; }
  std::optional<Slot> selectedKitSlot() const { return selectedKitSlot_; }
  int selectedPadIndex() const { return selectedPadIndex_; }
  const std::vector<Slot>& recentKitSlots() const { return recentKitSlots_; }
  bool autoSaveEnabled() const { return autoSaveEnabled_; }
  double autoSaveInterval() const { return autoSaveInterval_; }
  bool backupBeforeSaveEnabled() const { return backupBeforeSaveEnabled_; }
  bool showingShortcutsHelp() const { return showingShortcutsHelp_; }
  /// What saves that were cut had left on the card when it was read.
  const Leftovers& leftovers() const { return leftovers_; }
  void setCopiedWaveIndex(std::optional<WaveId> id);
  void setSelectedKitSlot(std::optional<Slot> slot);
  void setSelectedPadIndex(int index);
  void setAutoSaveEnabled(bool on);
  void setAutoSaveInterval(double seconds);
  void setBackupBeforeSaveEnabled(bool on);
  void setShowingShortcutsHelp(bool on);

  // Reading.
  bool hasUnsavedChanges() const;
  const Kit* kit(Slot slot) const;
  const Kit* selectedKit() const;
  std::optional<Pad> selectedPad() const;
  const Wave* selectedWave() const;
  const Wave* wave(WaveId id) const;
  std::string relativeAudioPath(const Wave& wave) const { return wave.relativeAudioPath(); }
  std::optional<Path> audioURL(const Wave& wave) const;
  const std::optional<Path>& rootURL() const { return rootURL_; }
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
  void save(Completion done, ChangedFiles changed = ChangedFiles::refuse);
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

  // Samples. The setters are undoable as "Sound Change".
  void importWave(const Path& source, const std::string& name, std::int64_t tag, Completion done);
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

  /// A save under way: its values, the lives they belong to and who waits for its end.
  struct RunningSave {
    SaveSnapshot snapshot;
    std::size_t card = 0;
    RecordLives::State lives;
    std::vector<Completion> waiting;
    SaveProgress progress;
    SaveAttempt attempt;
    std::optional<ExportResult> result;
    std::exception_ptr error;
  };
  struct Import {
    Path source;
    std::string name;
    std::int64_t tag;
    Completion done;
    std::uint64_t loadCount;  ///< the load whose card it was asked for
  };
  struct ImportPlace {
    std::int64_t bank;
    std::int64_t fileNumber;
    std::string fileName;
  };

  template<class Value>
  void publish(Value& field, Value value, Property property) {
    if (field == value) return;
    field = std::move(value);
    Q_EMIT published(property);
  }
  void tryLoad(const Path& location);
  void startAutoSaveTimer();
  void autoSaveTick();
  Kit* findKit(Slot slot);
  Wave* findWave(WaveId id);
  SaveSnapshot takeSnapshot() const;
  void startSave(std::vector<Completion> waiting, ChangedFiles changed);
  void finishSave(const std::shared_ptr<RunningSave>& run);
  void applyResult(const RunningSave& run);
  void applyFailure(const RunningSave& run);
  void applyKnown(const SaveAttempt& attempt, const ExportResult& result);
  void applyDeletions(const SaveSnapshot& snapshot, const ExportResult& result);
  std::string cardIdentity() const;
  QString detailOf(const std::exception_ptr& error) const;
  bool isFreeOnCard(const Path& file) const;
  void applyWave(const Wave& written, const SpdDocument& document);
  void applyKit(const Kit& written, const SpdDocument& document);
  void holdStaged(std::shared_ptr<const StagedFiles> staged);
  std::set<Path> stagedInUse() const;
  void startNextImport();
  void endImport(const std::exception_ptr& error);
  std::optional<ImportPlace> importPlace(const Path& source) const;
  std::string freeAudioName(std::int64_t bank, const std::string& wanted) const;
  void startStaging(const ImportPlace& place);
  void addImported(const Import& import, const ImportPlace& place, const Path& staged);
  void removeStaged(const Path& staged);
  void copySettings(const Wave& original, WaveId copy);

  LibraryServices services_;
  std::vector<Kit> kits_;
  std::vector<Wave> waves_;
  std::optional<TagList> tagList_;
  bool isLoaded_ = false;
  bool isExporting_ = false;
  std::optional<QString> lastError_;
  QString lastErrorDetail_;
  Leftovers leftovers_;
  std::optional<QString> rootPath_;
  std::map<WaveId, Wave> pendingDeletions_;
  std::map<RecordLives::Life, Wave> deletedWaves_;     ///< all pending deletions: an id can be deleted more than once
  std::map<Slot, std::uint64_t> pendingKitDeletions_;  ///< deleted slots, each with the deletion's own number
  std::optional<std::map<int, Pad>> copiedPads_;
  std::optional<WaveId> copiedWaveIndex_;
  std::optional<Slot> selectedKitSlot_;
  int selectedPadIndex_ = 0;
  std::vector<Slot> recentKitSlots_;
  bool autoSaveEnabled_ = true;
  double autoSaveInterval_ = 30.0;
  bool backupBeforeSaveEnabled_ = true;
  bool showingShortcutsHelp_ = false;

  std::optional<Path> rootURL_;
  std::string serial_;  ///< of the card's volume
  KnownFiles known_;
  KitDocs kitDocs_;
  WaveDocs waveDocs_;
  std::optional<SpdDocument> tagListDoc_;
  StagedFiles stagedAudioFiles_;
  WaveId maybeFree_ = 0;  ///< the user's ids below it are all taken
  std::optional<Path> backupDestinationOverride_;
  UndoManager undoManager_;
  std::unique_ptr<RepeatingTimer> autoSaveTimer_;

  RecordLives lives_;
  std::uint64_t loadCount_ = 0;  ///< tells the values of one load from those of another
  std::set<WaveId> begunWaves_;  ///< pending samples whose files a save has begun to write
  std::shared_ptr<RunningSave> running_;
  std::vector<Completion> waitingSaves_;
  ChangedFiles waitingChanged_ = ChangedFiles::refuse;           ///< what one of them asks for
  std::vector<std::weak_ptr<const StagedFiles>> stagedReaders_;  ///< what saves and exports under way read
  std::deque<Import> imports_;                                   ///< the first one is under way
  bool isImporting_ = false;
  bool isStartingImports_ = false;
  WaveId lastImported_ = noWave;
};

}  // namespace tamboro
