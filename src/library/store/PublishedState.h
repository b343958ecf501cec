#pragma once

#include <QString>
#include <map>
#include <optional>
#include <vector>

#include "library/reading/Leftovers.h"
#include "model/Kit.h"

namespace tamboro {

/// What the store publishes: it tells each by name when it has changed.
enum class LibraryProperty {
  kits,
  waves,
  tagList,
  isLoaded,
  isExporting,
  lastError,  // and lastErrorDetail
  rootPath,
  pendingDeletions,
  imports,
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

/// What the store publishes beside the open card, the imports and the saves.
struct PublishedState {
  std::optional<QString> lastError;
  QString lastErrorDetail;
  std::optional<QString> rootPath;
  Leftovers leftovers;
  std::optional<std::map<int, Pad>> copiedPads;
  std::optional<WaveId> copiedWaveIndex;
  std::optional<Slot> selectedKitSlot;
  int selectedPadIndex = 0;
  std::vector<Slot> recentKitSlots;  ///< the latest first
  bool autoSaveEnabled = true;
  double autoSaveInterval = 30.0;  ///< seconds
  bool backupBeforeSaveEnabled = true;
  bool showingShortcutsHelp = false;
};

}  // namespace tamboro
