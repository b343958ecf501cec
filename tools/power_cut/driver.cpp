// The program's part in a power-cut replay: opens a card with the real store on the real file system, makes a fixed
// script of edits, saves after each part of it, and copies the card's files out behind each save, so that the replay
// (replay.py) knows what the save was to bring. Runs in the guest, see guest.sh.
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "library/CardPaths.h"
#include "library/store/RolandLibrary.h"
#include "platform/RealFileSystem.h"
#include "support/HandFolderPanel.h"
#include "support/HandJobs.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"

namespace tamboro::test {
namespace {

constexpr const char* usage =
    "usage: power_cut_driver VOLUME WORK OUT SOUNDS [MARK...]\n"
    "VOLUME holds the card, WORK takes staged audio and the backup, SOUNDS is the number of sounds in the largest "
    "save.\n"
    "Behind save N the card is copied to OUT/N, and OUT/N.removed lists the files that the save was to remove first.\n"
    "The command MARK is called with \"begin-N\" and \"end-N\" around save N, or \"failed-N\" where it failed.\n";

class Driver {
 public:
  Driver(const Path& volume, const Path& work, Path out, std::string mark)
      : work_(work),
        out_(std::move(out)),
        mark_(std::move(mark)),
        files_(makeRealFileSystem()),
        library_({*files_, defaults_, jobs_, timers_, panel_, work / "staging", work / "backup"}) {
    std::filesystem::create_directories(work);
    library_.load(volume);
  }

  void edits();
  void imports(int count);
  void replacements(int count);
  void lists();

 private:
  void import(const std::string& fileName);
  void deleteEach(std::size_t nth);
  void deleteWave(WaveId id);
  void deleteKit(Slot slot);
  void save();
  void mark(const std::string& name) const;

  Path work_;
  Path out_;
  std::string mark_;
  std::unique_ptr<FileSystem> files_;
  MemoryDefaults defaults_;
  HandJobs jobs_;
  HandTimers timers_;
  HandFolderPanel panel_;
  RolandLibrary library_;
  int saves_ = 0;
  std::string removed_;  ///< lines; kits apart, since a new one can take a deleted one's place
  std::set<Slot> deletedKits_;
  std::minstd_rand random_{1};
};

void Driver::mark(const std::string& name) const {
  const std::string command = mark_ + " '" + name + "'";
  if (!mark_.empty() && std::system(command.c_str()) != 0) throw std::runtime_error("the mark " + name + " failed");
}

void Driver::save() {
  const std::string number = std::to_string(++saves_);
  std::exception_ptr failure;
  mark("begin-" + number);
  library_.save([&](const std::exception_ptr& error) { failure = error; });
  jobs_.runAll();
  mark((failure ? "failed-" : "end-") + number);
  try {
    if (failure) std::rethrow_exception(failure);
    std::printf("save %s\n", number.c_str());
  } catch (const std::exception& error) {
    std::printf("save %s failed: %s\n", number.c_str(), error.what());
  }
  for (const Slot slot : deletedKits_) {
    if (library_.kit(slot) == nullptr) removed_ += cardpaths::kitFile(slot).string() + "\n";
  }
  std::ofstream(out_ / (number + ".removed")) << removed_;
  removed_.clear();
  deletedKits_.clear();
  std::filesystem::copy(*library_.rootURL(), out_ / number, std::filesystem::copy_options::recursive);
}

/// A sound of its own bytes, up to 30 KB.
void Driver::import(const std::string& fileName) {
  const Path source = work_ / fileName;
  std::string bytes = "RIFF";
  bytes.resize(44 + random_() % 30000);
  std::generate(bytes.begin() + 4, bytes.end(), [&] { return static_cast<char>(random_() % 255 + 1); });
  std::ofstream(source, std::ios::binary | std::ios::trunc) << bytes;
  library_.importWave(source, "Cut", 1, [](const std::exception_ptr& error) {
    if (error) std::rethrow_exception(error);
  });
  jobs_.runAll();
}

void Driver::deleteEach(std::size_t nth) {
  const std::vector<Wave> waves = library_.waves();
  for (std::size_t i = 0; i < waves.size(); i += nth)
    deleteWave(waves[i].id());
}

void Driver::deleteWave(WaveId id) {
  const Wave wave = *library_.wave(id);
  if (wave.isFactory()) return;
  for (const Path& file : {cardpaths::waveParameterFile(wave.bank, wave.fileNumber), *cardpaths::audioFile(wave)})
    removed_ += file.string() + "\n";
  library_.deleteWave(id);
}

void Driver::deleteKit(Slot slot) {
  deletedKits_.insert(slot);
  library_.deleteKit(slot);
}

/// Changed records of every kind, and sounds that take the ids and one name of deleted ones.
void Driver::edits() {
  const std::string reused = Path(library_.waves().back().relativeAudioPath()).filename();
  deleteWave(library_.waves().back().id());
  deleteEach(9);
  deleteKit(library_.kits().back().slot);
  import(reused);
  for (int i = 0; i < 4; ++i)
    import("new sound " + std::to_string(i) + ".wav");
  for (const Kit& kit : std::vector<Kit>(library_.kits()))
    library_.setKitName(kit.slot, "Cut " + std::to_string(kit.slot));
  for (const Wave& wave : std::vector<Wave>(library_.waves()))
    library_.setWaveTag(wave.id(), (wave.tag() + 1) % 8);
  library_.setTagName(0, "Cut");
  if (const auto slot = library_.createBlankKit()) library_.setPadSound(*slot, 0, library_.waves().back().id());
  save();
}

/// Several batches, folders of new banks, and folders that outgrow their clusters.
void Driver::imports(int count) {
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    import(i % 2 == 0 ? "s" + number + ".wav" : "a sound with a rather long name, number " + number + ".wav");
  }
  for (const Kit& kit : std::vector<Kit>(library_.kits()))
    library_.setPadSound(kit.slot, 1, library_.waves().back().id());
  save();
}

/// Many removals, and new files in what they freed.
void Driver::replacements(int count) {
  deleteEach(3);
  deleteKit(library_.kits().front().slot);
  deleteKit(library_.kits().front().slot);
  for (int i = 0; i < count / 3; ++i)
    import("s" + std::to_string(2 * i) + ".wav");
  for (int i = 0; i < 1 + count / 4; ++i)
    library_.createBlankKit();
  save();
}

void Driver::lists() {
  library_.setWaveName(library_.waves().back().id(), "Last");
  save();
}

}  // namespace
}  // namespace tamboro::test

int main(int argc, char** argv) try {
  const QCoreApplication application(argc, argv);
  if (argc < 5) {
    std::fputs(tamboro::test::usage, stderr);
    return 2;
  }
  std::string mark;
  for (int i = 5; i < argc; ++i)
    mark += (i == 5 ? "" : " ") + std::string(argv[i]);
  tamboro::test::Driver driver(argv[1], argv[2], argv[3], mark);
  const int sounds = std::stoi(argv[4]);
  driver.edits();
  driver.imports(sounds);
  driver.replacements(sounds);
  driver.lists();
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "power_cut_driver: %s\n", error.what());
  return 1;
}
