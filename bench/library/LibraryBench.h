#pragma once

#include "library/store/RolandLibrary.h"
#include "platform/RealFileSystem.h"
#include "support/HandFolderPanel.h"
#include "support/HandJobs.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"

namespace tamboro::bench {

/// A store on the computer's own disk, whose jobs run on the calling thread when they are told to.
struct DiskStore {
  explicit DiskStore(const Path& home)
      : library({*files, defaults, jobs, timers, panel, home / "staging", home / "Tamboro Backup"}) {}

  std::unique_ptr<FileSystem> files = makeRealFileSystem();
  test::MemoryDefaults defaults;
  test::HandJobs jobs;
  test::HandTimers timers;
  test::HandFolderPanel panel;
  RolandLibrary library;
};

/// Each prints its lines (name, measured, limit) and returns whether every limit is kept. `card` is the root of a card
/// of 100 kits and 10,000 samples, which they leave as it is; `place` is a folder to work in.
bool measureLoad(const Path& card, const Path& place);
bool measureBackup(const Path& card, const Path& place);
bool measureImport(const Path& place);
bool measureImportCopy(const Path& place);
bool measureEdit(const Path& card, const Path& place);
bool measureHostileKit(const Path& place);

}  // namespace tamboro::bench
