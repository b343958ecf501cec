// The program's part in a fault sweep: opens a card with the real store on the real file system, makes fixed edits and
// carries out one operation, the window in which the sweep (sweep.py) lets system calls fail. Its exit code tells what
// the user would be told.
#include <unistd.h>

#include <QCoreApplication>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

#include "library/store/RolandLibrary.h"
#include "platform/RealFileSystem.h"
#include "support/HandFolderPanel.h"
#include "support/HandJobs.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"

namespace tamboro::test {
namespace {

constexpr const char* usage =
    "usage: fault_sweep_driver save|delete|export|import|backup|open VOLUME WORK [gone]\n"
    "VOLUME holds the card; WORK takes staged audio, the backup, the export and WORK/first, a copy of the card behind "
    "a\n"
    "failure. After a failure the operation is repeated, but not where everything is gone.\n";

// What the sweep reads.
enum Exit { succeeded = 0, failedAndRepeated = 10, lostItsFlags = 11, failedAgain = 12, failed = 13 };

class Driver {
 public:
  Driver(const Path& volume, Path work, bool isGone)
      : work_(std::move(work)),
        isGone_(isGone),
        files_(makeRealFileSystem()),
        library_({*files_, defaults_, jobs_, timers_, panel_, work_ / "staging", work_ / "backup"}) {
    library_.load(volume);
    library_.setBackupBeforeSaveEnabled(false);
    sound("first.wav", 'a');
    sound("second.wav", 'b');
  }

  int save() {
    edit();
    import("first.wav");
    import("second.wav");
    return saveInWindow();
  }

  int remove() {
    library_.deleteWave(library_.waves().back().id());
    library_.deleteKit(library_.kits().back().slot);
    return saveInWindow();
  }

  int backup() {
    library_.setBackupBeforeSaveEnabled(true);
    library_.setKitLevel(library_.kits().front().slot, 1);
    return saveInWindow();
  }

  int exportKit() {
    import("first.wav");
    const Slot slot = library_.kits().front().slot;
    library_.setPadSound(slot, 0, library_.waves().back().id());
    library_.setPadSound(slot, 1, library_.waves().front().id());
    return inWindow([&](auto done) { library_.exportKit(slot, work_ / "export", done); }, [] { return true; });
  }

  int importSounds() {
    const auto before = library_.waves();
    const auto start = [&](auto done) { library_.importWave(work_ / "first.wav", "New", 0, done); };
    return inWindow(start, [&] { return library_.waves() == before; });
  }

 private:
  using Start = std::function<void(RolandLibrary::Completion)>;

  void sound(const std::string& name, char content) const {
    std::ofstream(work_ / name, std::ios::binary) << "RIFF" << std::string(70000, content);
  }
  void import(const std::string& name) {
    library_.importWave(work_ / name, "Sweep", 1, [](const std::exception_ptr& error) {
      if (error) std::rethrow_exception(error);
    });
    jobs_.runAll();
  }
  void edit() {
    const Slot slot = library_.kits().front().slot;
    library_.setKitName(slot, "Sweep");
    if (const auto made = library_.createBlankKit()) library_.setPadSound(*made, 0, library_.waves().front().id());
    library_.setWaveTag(library_.waves().back().id(), 2);
    library_.setTagName(0, "Sweep");
  }

  int saveInWindow() {
    return inWindow([&](auto done) { library_.save(done); }, [&] { return library_.hasUnsavedChanges(); });
  }

  bool succeeds(const Start& start) {
    bool isDone = false;
    start([&](const std::exception_ptr& error) { isDone = error == nullptr; });
    jobs_.runAll();
    return isDone;
  }

  int inWindow(const Start& start, const std::function<bool()>& isKept) {
    static_cast<void>(::access("/fault-sweep/begin", F_OK));
    const bool isDone = succeeds(start);
    static_cast<void>(::access("/fault-sweep/end", F_OK));
    if (isDone) return succeeded;
    if (!isKept()) return lostItsFlags;
    if (isGone_) return failed;
    std::filesystem::copy(*library_.rootURL(), work_ / "first", std::filesystem::copy_options::recursive);
    return succeeds(start) ? failedAndRepeated : failedAgain;
  }

  Path work_;
  bool isGone_;
  std::unique_ptr<FileSystem> files_;
  MemoryDefaults defaults_;
  HandJobs jobs_;
  HandTimers timers_;
  HandFolderPanel panel_;
  RolandLibrary library_;
};

}  // namespace
}  // namespace tamboro::test

int main(int argc, char** argv) try {
  using tamboro::test::Driver;
  const QCoreApplication application(argc, argv);
  const std::map<std::string, int (Driver::*)()> operations{{"save", &Driver::save},
                                                            {"delete", &Driver::remove},
                                                            {"export", &Driver::exportKit},
                                                            {"import", &Driver::importSounds},
                                                            {"backup", &Driver::backup}};
  const std::string name = argc < 4 ? "" : argv[1];
  if (!operations.contains(name) && name != "open") {
    std::fputs(tamboro::test::usage, stderr);
    return 2;
  }
  Driver driver(argv[2], argv[3], argc > 4);
  return name == "open" ? 0 : (driver.*operations.at(name))();
} catch (const std::exception& error) {
  std::fprintf(stderr, "fault_sweep_driver: %s\n", error.what());
  return 1;
}
