#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "library/saving/SaveJob.h"
#include "library/saving/SavePlan.h"
#include "support/FailingFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/Tree.h"

namespace tamboro::test {

inline const std::string temporaryName = ".tamboro-";

inline Wave sample(std::int64_t bank, std::int64_t file, std::string_view path, bool isPending = false) {
  return {bank, file, newWaveNode("Sound", 0, path), true, isPending};
}

inline Kit kit(Slot slot, std::string_view level) {
  return {slot, SpdNode::container("KitPrm", {SpdNode::leaf("Level", level)}), true};
}

/// A card in /card, mounted, with one of everything that a save can meet, and a snapshot that touches all of it.
struct SaveFixture {
  SaveFixture() {
    files.mount("/card", {.serial = "CARD"});
    writeTree(files, "/card", before);
    writeTree(files, "/staging", {{"new.wav", std::string(270000, 'n')}, {"hat.wav", "hat"}});
    snapshot.root = "/card";
    snapshot.serial = "CARD";
    for (const auto& [name, bytes] : before)
      if (name.ends_with(".spd")) snapshot.known.note(name, contentHash(bytes));
    snapshot.known.settle();
    snapshot.kitSlots = {1, 2};
    snapshot.deletions = {{200, sample(2, 0, "02/KICK.WAV")}, {202, sample(2, 2, "02/snare.wav")}};
    snapshot.kitDeletions = {{2, 1}, {7, 2}};
    snapshot.dirtyWaves = {sample(2, 1, "02/kick.wav"), sample(2, 2, "02/new.wav", true),
                           sample(3, 0, "03/hat.wav", true)};
    snapshot.dirtyKits = {kit(1, "11"), kit(2, "22")};
    snapshot.tagList = TagList{SpdNode::container("TagList", {}), true};
    snapshot.waves = snapshot.dirtyWaves;
    snapshot.tagCount = 1;
    snapshot.stagedAudioFiles = {{202, "/staging/new.wav"}, {300, "/staging/hat.wav"}};
    snapshot.backupBeforeSave = true;
    snapshot.backupDestination = "/documents/backup";
    ExportResult result;
    for (const PlannedFile& file : makeSavePlan(snapshot, *files.rooted("/card"), result).files)
      after[file.path.string()] = content(file);
    for (const char* kept : {"KIT/readme.txt", "WAVE/DATA/02/kick.wav"})
      after[kept] = before.at(kept);
  }

  std::string content(const PlannedFile& file) const {
    if (const auto* bytes = std::get_if<std::string>(&file.content)) return *bytes;
    return readFile(files, std::get<Path>(file.content));
  }
  Tree card() const { return readTree(files, "/card"); }

  const Tree before = {{"KIT/kit001.spd", "kit 1"},          {"KIT/kit002.spd", "kit 2"},
                       {"KIT/kit2.spd", "kit 2 again"},      {"KIT/kit007.spd", "kit 7"},
                       {"KIT/readme.txt", "read me"},        {"WAVE/PRM/02/00.spd", "sample 200"},
                       {"WAVE/PRM/02/01.spd", "sample 201"}, {"WAVE/PRM/02/02.spd", "sample 202"},
                       {"WAVE/DATA/02/kick.wav", "kick"},    {"WAVE/DATA/02/snare.wav", "snare"},
                       {"SYSTEM/tag_list.spd", "tags"},      {"SYSTEM/wavelist_name.spd", "names"}};
  Tree after;  ///< of the card, by the plan, without what is to go
  MemoryFileSystem files;
  SaveSnapshot snapshot;
};

/// Calls `attempt(fail)` on and on, where `fail` sets a file system up to fail at the first, the second, the third ...
/// operation: only that one, then that one and all behind it (a card that has been pulled). `attempt` returns its file
/// system's count; the sweep ends when that is below the operation to fail.
template<typename Attempt>
void sweepFailures(const Attempt& attempt) {
  for (const bool pulled : {false, true}) {
    for (std::uint64_t number = 1;; ++number) {
      SCOPED_TRACE((pulled ? "pulled at operation " : "failed operation ") + std::to_string(number));
      const auto fail = [&](FailingFileSystem& files) { pulled ? files.failFrom(number) : files.failAt(number); };
      const std::uint64_t count = attempt(fail, pulled);
      if (count < number) break;
      ASSERT_LT(number, 5000U);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace tamboro::test
