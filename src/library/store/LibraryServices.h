#pragma once

#include "platform/BackgroundJobs.h"
#include "platform/Defaults.h"
#include "platform/FileSystem.h"
#include "platform/FolderPanel.h"
#include "platform/RepeatingTimer.h"

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

}  // namespace tamboro
