#include "library/store/RolandLibrary.h"

#include <utility>

namespace tamboro {

const QString RolandLibrary::bookmarkKey = QStringLiteral("RolandLibrary.bookmark");
const QString RolandLibrary::recentKitsKey = QStringLiteral("RolandLibrary.recentKitSlots");
const QString RolandLibrary::autoSaveEnabledKey = QStringLiteral("RolandLibrary.autoSaveEnabled");
const QString RolandLibrary::autoSaveIntervalKey = QStringLiteral("RolandLibrary.autoSaveInterval");
const QString RolandLibrary::backupBeforeSaveKey = QStringLiteral("RolandLibrary.backupBeforeSaveEnabled");

RolandLibrary::RolandLibrary(const LibraryServices& services, QObject* parent)
    : QObject(parent),
      services_(services),
      staging_(services.files, services.stagingDir),
      imports_(card_, lives_, staging_, services.files, services.jobs),
      saves_(card_, lives_, staging_, services.files, services.jobs, [this] {
        return BackupChoice{state_.backupBeforeSaveEnabled,
                            backupDestinationOverride_.value_or(services_.backupDestination)};
      }) {
  connect(&imports_, &ImportQueue::imported, this, [this] { Q_EMIT published(Property::waves); });
  connect(&imports_, &ImportQueue::batchChanged, this, [this] { Q_EMIT published(Property::imports); });
  connect(&saves_, &SaveQueue::runningChanged, this, [this] { Q_EMIT published(Property::isExporting); });
  connect(&saves_, &SaveQueue::applied, this, [this] {
    for (const Property property : {Property::kits, Property::waves, Property::tagList, Property::pendingDeletions})
      Q_EMIT published(property);
  });
  state_.autoSaveEnabled = services_.defaults.boolean(autoSaveEnabledKey).value_or(true);
  state_.autoSaveInterval = services_.defaults.real(autoSaveIntervalKey).value_or(30.0);
  state_.backupBeforeSaveEnabled = services_.defaults.boolean(backupBeforeSaveKey).value_or(true);
  startAutoSaveTimer();
  state_.recentKitSlots = services_.defaults.integers(recentKitsKey).value_or(std::vector<Slot>());
}

void RolandLibrary::setCopiedWaveIndex(std::optional<WaveId> id) {
  publish(state_.copiedWaveIndex, id, Property::copiedWaveIndex);
}

void RolandLibrary::setSelectedKitSlot(std::optional<Slot> slot) {
  publish(state_.selectedKitSlot, slot, Property::selectedKitSlot);
}

void RolandLibrary::setSelectedPadIndex(int index) {
  publish(state_.selectedPadIndex, index, Property::selectedPadIndex);
}

void RolandLibrary::setShowingShortcutsHelp(bool on) {
  publish(state_.showingShortcutsHelp, on, Property::showingShortcutsHelp);
}

void RolandLibrary::setAutoSaveEnabled(bool on) {
  services_.defaults.setBoolean(autoSaveEnabledKey, on);
  publish(state_.autoSaveEnabled, on, Property::autoSaveEnabled);
  startAutoSaveTimer();
}

void RolandLibrary::setAutoSaveInterval(double seconds) {
  services_.defaults.setReal(autoSaveIntervalKey, seconds);
  publish(state_.autoSaveInterval, seconds, Property::autoSaveInterval);
  startAutoSaveTimer();
}

void RolandLibrary::setBackupBeforeSaveEnabled(bool on) {
  services_.defaults.setBoolean(backupBeforeSaveKey, on);
  publish(state_.backupBeforeSaveEnabled, on, Property::backupBeforeSaveEnabled);
}

void RolandLibrary::startAutoSaveTimer() {
  autoSaveTimer_.reset();
  // The file of the settings may hold any number; more than a tick a second would keep the card busy for nothing.
  const double period = state_.autoSaveInterval >= 1 ? state_.autoSaveInterval : 1;
  if (state_.autoSaveEnabled) autoSaveTimer_ = services_.timers.repeat(period, [this] { autoSaveTick(); });
}

/// A tick during a save does nothing: what it would save is either in that save or found by the next tick.
void RolandLibrary::autoSaveTick() {
  if (hasUnsavedChanges() && !isExporting()) save([](const std::exception_ptr&) {});
}

void RolandLibrary::recordRecentKit(Slot slot) {
  std::vector<Slot> recent = state_.recentKitSlots;
  std::erase(recent, slot);
  recent.insert(recent.begin(), slot);
  if (recent.size() > maxRecentKits) recent.resize(maxRecentKits);
  services_.defaults.setIntegers(recentKitsKey, recent);
  publish(state_.recentKitSlots, std::move(recent), Property::recentKitSlots);
}

const Kit* RolandLibrary::selectedKit() const {
  return state_.selectedKitSlot ? kit(*state_.selectedKitSlot) : nullptr;
}

std::optional<Pad> RolandLibrary::selectedPad() const {
  const Kit* kit = selectedKit();
  return kit ? kit->pad(state_.selectedPadIndex) : std::nullopt;
}

const Wave* RolandLibrary::selectedWave() const {
  const auto pad = selectedPad();
  return pad && pad->wave() >= 0 ? wave(pad->wave()) : nullptr;
}

}  // namespace tamboro
