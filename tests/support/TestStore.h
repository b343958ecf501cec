#pragma once

#include <string>

#include "library/store/RolandLibrary.h"
#include "support/HandFolderPanel.h"
#include "support/HandJobs.h"
#include "support/HandTimers.h"
#include "support/MemoryDefaults.h"
#include "support/MemoryFileSystem.h"
#include "support/Tree.h"

namespace tamboro::test {

/// A small card as owners have them: kits 1 (CR LF, fifteen pads), 2 (LF, three pads) and 4 (both line ends, odd
/// pads, no trailing line end), factory sample 1, user samples 205 (its audio under its own path), 206 (no `Path`)
/// and 207, two tags, elements and files that the program doesn't know.
Tree sampleCard();

/// A store over a card in memory, with jobs, timers and panels run by hand.
struct TestStore {
  static inline const Path root = "/media/card/Roland/SPD-SX";
  static inline const Path staging = "/home/data/tamboro/staging";
  static inline const Path backup = "/home/documents/Tamboro Backup";

  MemoryFileSystem files;
  MemoryDefaults defaults;
  HandJobs jobs;
  HandTimers timers;
  HandFolderPanel panel;
  RolandLibrary library;

  TestStore();
  /// Mounts the card's volume with these files and opens it.
  void open(const Tree& card = sampleCard());
  void mountCard(const std::string& serial, const Tree& card);
  /// Of the card that is held; what else was to fail doesn't any more.
  void setReadOnly(bool on);
  Tree card() const { return readTree(files, root); }
  /// One turn of the event loop with these edits in it.
  template<class Edits>
  void turn(const Edits& edits) {
    edits();
    library.undoManager().endTurn();
  }
  /// Starts an operation that ends with a completion and runs all jobs; the error's text, or an empty one.
  std::string ended(const std::function<void(RolandLibrary::Completion)>& start);
  std::string save(RolandLibrary::ChangedFiles changed = RolandLibrary::ChangedFiles::refuse);
  std::string import(const Path& source, const std::string& name, std::int64_t tag = 0);
};

/// The text of a completion's error, or an empty one.
std::string textOf(const std::exception_ptr& error);

/// The first difference that a save may make besides what was edited: the three wave lists.
Tree withoutIndexes(Tree card);

/// The text with one place replaced; the test fails where it isn't there exactly once.
std::string replaced(const std::string& text, const std::string& from, const std::string& to);

}  // namespace tamboro::test
