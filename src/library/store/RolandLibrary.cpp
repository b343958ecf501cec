#include "library/store/RolandLibrary.h"

#include <algorithm>
#include <utility>

#include "library/CardPaths.h"

namespace tamboro {

const QString RolandLibrary::bookmarkKey = QStringLiteral("RolandLibrary.bookmark");
const QString RolandLibrary::recentKitsKey = QStringLiteral("RolandLibrary.recentKitSlots");
const QString RolandLibrary::autoSaveEnabledKey = QStringLiteral("RolandLibrary.autoSaveEnabled");
const QString RolandLibrary::autoSaveIntervalKey = QStringLiteral("RolandLibrary.autoSaveInterval");
const QString RolandLibrary::backupBeforeSaveKey = QStringLiteral("RolandLibrary.backupBeforeSaveEnabled");

RolandLibrary::RolandLibrary(const LibraryServices& services, QObject* parent) : QObject(parent), services_(services) {
  try {
    makeFolders(services_.files, services_.stagingDir);
  } catch (const FileError&) {
    // An import that needs the folder reports what is wrong with it.
  }
  autoSaveEnabled_ = services_.defaults.boolean(autoSaveEnabledKey).value_or(true);
  autoSaveInterval_ = services_.defaults.real(autoSaveIntervalKey).value_or(30.0);
  backupBeforeSaveEnabled_ = services_.defaults.boolean(backupBeforeSaveKey).value_or(true);
  startAutoSaveTimer();
  recentKitSlots_ = services_.defaults.integers(recentKitsKey).value_or(std::vector<Slot>());
}

RolandLibrary::~RolandLibrary() = default;

void RolandLibrary::setCopiedWaveIndex(std::optional<WaveId> id) {
  publish(copiedWaveIndex_, id, Property::copiedWaveIndex);
}

void RolandLibrary::setSelectedKitSlot(std::optional<Slot> slot) {
  publish(selectedKitSlot_, slot, Property::selectedKitSlot);
}

void RolandLibrary::setSelectedPadIndex(int index) {
  publish(selectedPadIndex_, index, Property::selectedPadIndex);
}

void RolandLibrary::setShowingShortcutsHelp(bool on) {
  publish(showingShortcutsHelp_, on, Property::showingShortcutsHelp);
}

void RolandLibrary::setAutoSaveEnabled(bool on) {
  services_.defaults.setBoolean(autoSaveEnabledKey, on);
  publish(autoSaveEnabled_, on, Property::autoSaveEnabled);
  startAutoSaveTimer();
}

void RolandLibrary::setAutoSaveInterval(double seconds) {
  services_.defaults.setReal(autoSaveIntervalKey, seconds);
  publish(autoSaveInterval_, seconds, Property::autoSaveInterval);
  startAutoSaveTimer();
}

void RolandLibrary::setBackupBeforeSaveEnabled(bool on) {
  services_.defaults.setBoolean(backupBeforeSaveKey, on);
  publish(backupBeforeSaveEnabled_, on, Property::backupBeforeSaveEnabled);
}

void RolandLibrary::startAutoSaveTimer() {
  autoSaveTimer_.reset();
  // The file of the settings may hold any number; more than a tick a second would keep the card busy for nothing.
  const double period = autoSaveInterval_ >= 1 ? autoSaveInterval_ : 1;
  if (autoSaveEnabled_) autoSaveTimer_ = services_.timers.repeat(period, [this] { autoSaveTick(); });
}

/// A tick during a save does nothing: what it would save is either in that save or found by the next tick.
void RolandLibrary::autoSaveTick() {
  if (hasUnsavedChanges() && !isExporting_) save([](const std::exception_ptr&) {});
}

void RolandLibrary::recordRecentKit(Slot slot) {
  std::vector<Slot> recent = recentKitSlots_;
  std::erase(recent, slot);
  recent.insert(recent.begin(), slot);
  if (recent.size() > maxRecentKits) recent.resize(maxRecentKits);
  services_.defaults.setIntegers(recentKitsKey, recent);
  publish(recentKitSlots_, std::move(recent), Property::recentKitSlots);
}

bool RolandLibrary::hasUnsavedChanges() const {
  const auto isDirty = [](const auto& record) { return record.isDirty; };
  return std::any_of(kits_.begin(), kits_.end(), isDirty) || std::any_of(waves_.begin(), waves_.end(), isDirty) ||
         (tagList_ && tagList_->isDirty) || !pendingDeletions_.empty() || !pendingKitDeletions_.empty();
}

const Kit* RolandLibrary::kit(Slot slot) const {
  const auto found = std::ranges::lower_bound(kits_, slot, {}, &Kit::slot);
  return found != kits_.end() && found->slot == slot ? &*found : nullptr;
}

Kit* RolandLibrary::findKit(Slot slot) {
  return const_cast<Kit*>(std::as_const(*this).kit(slot));
}

const Wave* RolandLibrary::wave(WaveId id) const {
  const auto found = std::ranges::lower_bound(waves_, id, {}, &Wave::id);
  return found != waves_.end() && found->id() == id ? &*found : nullptr;
}

Wave* RolandLibrary::findWave(WaveId id) {
  return const_cast<Wave*>(std::as_const(*this).wave(id));
}

const Kit* RolandLibrary::selectedKit() const {
  return selectedKitSlot_ ? kit(*selectedKitSlot_) : nullptr;
}

std::optional<Pad> RolandLibrary::selectedPad() const {
  const Kit* kit = selectedKit();
  return kit ? kit->pad(selectedPadIndex_) : std::nullopt;
}

const Wave* RolandLibrary::selectedWave() const {
  const auto pad = selectedPad();
  return pad && pad->wave() >= 0 ? wave(pad->wave()) : nullptr;
}

/// Whether a new record may have its file there: nothing answers to the name on the card, or what does is ours. Names
/// in capitals are asked for, too: where they are other files they would be the same on the instrument's own volume.
bool RolandLibrary::isFreeOnCard(const Path& file) const {
  if (known_.isKnown(file)) return true;
  std::string capitals = file.filename().native();
  std::ranges::transform(capitals, capitals.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
  try {
    for (const Path& name : {file.filename(), Path(capitals)}) {
      if (services_.files.entryStatus(*rootURL_ / file.parent_path() / name).kind != FileKind::none) return false;
    }
  } catch (const FileError&) {
    // A card that doesn't answer has nothing to lose now; before a save writes there it is asked again.
  }
  return true;
}

std::optional<Path> RolandLibrary::audioURL(const Wave& wave) const {
  if (wave.isPending) {
    const auto staged = stagedAudioFiles_.find(wave.id());
    return staged == stagedAudioFiles_.end() ? std::nullopt : std::optional(staged->second);
  }
  const auto audio = cardpaths::audioFile(wave);
  if (!rootURL_ || !audio) return std::nullopt;
  return *rootURL_ / *audio;
}

}  // namespace tamboro
