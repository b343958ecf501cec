// The program's part in the count of what a save costs a card: one row of the table with the real store on the real
// file system. Prints what the device was asked for meanwhile. Runs in the guest, see guest.sh.
#include <QCoreApplication>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "library/saving/Backup.h"
#include "library/store/RolandLibrary.h"
#include "platform/RealFileSystem.h"
#include "support/HandFolderPanel.h"
#include "support/HandJobs.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"

namespace tamboro::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* usage =
    "usage: card_cost_driver ROW VOLUME WORK STATISTICS\n"
    "VOLUME holds the card and was mounted just now; STATISTICS is the file with its device's, as /sys tells them.\n"
    "ROW: read (the bare floor of open), open, kit, kits, sounds-N, export, copy.\n"
    "Prints reads, writes, flushes and KB written; of export and copy also the reads of the bare floor.\n";

struct Cost {
  std::uint64_t reads = 0, writes = 0, flushes = 0, written = 0;
};

class Driver {
 public:
  Driver(Path volume, Path work, Path statistics)
      : volume_(std::move(volume)),
        work_(std::move(work)),
        statistics_(std::move(statistics)),
        files_(makeRealFileSystem()),
        library_({*files_, defaults_, jobs_, timers_, panel_, work_ / "staging", work_ / "backup"}) {
    fs::create_directories(work_);
    library_.setBackupBeforeSaveEnabled(false);
  }

  void run(const std::string& row) {
    if (row == "read") return tell(row, [&] { readEach({"KIT", "WAVE/PRM", "SYSTEM"}); });
    if (row == "open") return tell(row, [&] { library_.load(volume_); });
    if (row == "copy") return copy();
    library_.load(volume_);
    if (row == "export") return exportKit();
    if (row == "kit") library_.setKitName(library_.kits().front().slot, "Cost");
    if (row == "kits") {
      for (const Kit& kit : std::vector<Kit>(library_.kits()))
        library_.setKitName(kit.slot, "Cost " + std::to_string(kit.slot));
    }
    if (row.starts_with("sounds-")) import(std::stoi(row.substr(7)));
    tell(row, [&] { save(); });
  }

 private:
  Cost now() const {
    std::ifstream stream(statistics_);
    std::array<std::uint64_t, 16> fields{};
    for (std::uint64_t& field : fields)
      stream >> field;
    if (!stream) throw std::runtime_error("no statistics in " + statistics_.string());
    return {fields[0], fields[4], fields[15], fields[6] / 2};
  }

  Cost costOf(const std::function<void()>& work) const {
    const Cost before = now();
    work();
    const Cost after = now();
    return {after.reads - before.reads, after.writes - before.writes, after.flushes - before.flushes,
            after.written - before.written};
  }

  void tell(const std::string& row, const std::function<void()>& work) const {
    const Cost cost = costOf(work);
    std::printf("%s\t%lu\t%lu\t%lu\t%lu\n", row.c_str(), cost.reads, cost.writes, cost.flushes, cost.written);
  }

  void tellBesideFloor(const std::string& row, const std::function<void()>& work, const std::function<void()>& floor) {
    forget();
    const Cost least = costOf(floor);
    forget();
    const Cost cost = costOf(work);
    std::printf("%s\t%lu\t%lu\t%lu\t%lu\t%lu\n", row.c_str(), cost.reads, cost.writes, cost.flushes, cost.written,
                least.reads);
  }

  // What the system keeps of the card's files.
  static void forget() { std::ofstream("/proc/sys/vm/drop_caches") << "3"; }

  void readFile(const Path& file) const {
    std::string bytes;
    files_->read(file, bytes);
  }

  void readEach(std::initializer_list<const char*> folders) const {
    for (const char* folder : folders) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root() / folder)) {
        if (entry.is_regular_file()) readFile(entry.path());
      }
    }
  }

  Path root() const { return volume_ / "Roland/SPD-SX"; }

  void finish(const std::exception_ptr& failure) {
    if (failure) std::rethrow_exception(failure);
  }

  void save() {
    std::exception_ptr failure;
    library_.save([&](const std::exception_ptr& error) { failure = error; });
    jobs_.runAll();
    finish(failure);
  }

  void import(int count) {
    const Path source = work_ / "sound.wav";
    std::ofstream(source, std::ios::binary) << "RIFF" << std::string(50000, 's');
    for (int i = 0; i < count; ++i) {
      const Path named = work_ / ("sound " + std::to_string(i) + ".wav");
      fs::create_hard_link(source, named);
      library_.importWave(named, "Cost", 1, [](const std::exception_ptr& error) {
        if (error) std::rethrow_exception(error);
      });
      jobs_.runAll();
    }
  }

  void exportKit() {
    const Slot slot = library_.kits().front().slot;
    std::exception_ptr failure;
    const Path to = work_ / "export";
    fs::create_directories(to);
    const auto run = [&] {
      library_.exportKit(slot, to, [&](const std::exception_ptr& error) { failure = error; });
      jobs_.runAll();
      finish(failure);
    };
    run();  // tells which audio it reads
    const auto floor = [&] {
      if (!fs::exists(to / "WAVE/DATA")) return;
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(to / "WAVE/DATA")) {
        if (entry.is_regular_file()) readFile(root() / entry.path().lexically_relative(to));
      }
    };
    tellBesideFloor("export", run, floor);
  }

  void copy() {
    const auto card = files_->rooted(root());
    tellBesideFloor(
        "copy", [&] { backup(*card, *files_, root(), work_ / "backup"); },
        [&] {
          readEach({"KIT", "WAVE/PRM", "SYSTEM"});
        });
  }

  Path volume_;
  Path work_;
  Path statistics_;
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
  const QCoreApplication application(argc, argv);
  if (argc != 5) {
    std::fputs(tamboro::test::usage, stderr);
    return 2;
  }
  tamboro::test::Driver(argv[2], argv[3], argv[4]).run(argv[1]);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "card_cost_driver: %s\n", error.what());
  return 1;
}
