#pragma once

#include <functional>
#include <memory>
#include <set>

#include "library/store/ElementTree.h"
#include "support/HandJobs.h"

namespace tamboro::test {

/// A simple account of what the store promises: records as trees of leaves, an undo stack of snapshots that belong to
/// one life of a record, a queue of imports and saves that write a snapshot. It shares no code with the store.
class CardModel {
 public:
  using Change = std::function<void(Element&)>;

  CardModel(const Tree& card, const Tree& sources);

  HandJobs jobs;
  bool readOnly = false;

  std::set<std::int64_t> slots() const;
  std::set<std::int64_t> waveIds() const;
  std::set<std::int64_t> pendingIds() const;
  bool hasUnsavedChanges() const;
  bool canUndo() const { return !open_.empty() || !undo_.empty(); }
  bool canRedo() const { return !redo_.empty(); }
  std::string differenceOf(const Tree& card) const { return test::differenceOf(files_, card); }

  void editKit(int slot, const Change& change) { edit(&Records::kits, slot, change); }
  void editWave(int id, const Change& change) { edit(&Records::waves, id, change); }
  void editPad(int slot, int pad, const Change& change);
  void setTagName(int tag, const std::string& name);
  void endTurn();
  void undo() { run(undo_, redo_); }
  void redo() { run(redo_, undo_); }

  int createKit(int source, bool blank);  ///< -1 without one
  void deleteKit(int slot);
  void copyPads(int slot);
  void pastePads(int slot);
  void importWave(const std::string& source, const std::string& name, int tag);
  void duplicateWave(int id);
  void deleteWave(int id);

  void save();
  /// `check` gets the exported folder, or null for a failure, when the export has ended.
  void exportKit(int slot, const std::function<void(const ModelTree*)>& check);
  /// Reading the same card again: first what waits for a running save, then the files as they are found.
  void waitForSave();
  void load(const Tree& card);

 private:
  struct Record {
    int life = 0;
    Element node;
    bool isDirty = false;
    bool isPending = false;
    std::string audio;  // of a pending sample
    std::string trailing;
    friend bool operator==(const Record&, const Record&) = default;
  };
  using RecordMap = std::map<int, Record>;
  struct Records {
    RecordMap kits, waves;
    Element tags;
    bool tagsAreDirty = false;
    std::string tagsTrailing;
  };
  struct Deletion {
    int id;
    Record record;
  };
  struct Save {
    Records records;
    std::map<int, Deletion> deletions;  // by a number of their own
    std::map<int, int> kitDeletions;    // slot and number
    bool isWritten = false;
  };
  struct Import {
    std::string source, staged, content, name;  // a path, or the path and content of staged audio
    int tag, load;
    std::function<void(int)> done;
  };
  using Step = std::vector<std::function<void()>>;

  void edit(RecordMap Records::*records, int key, const Change& change);
  void restore(RecordMap Records::*records, int key, Record snapshot);
  void restorePad(int slot, int pad, int life, const Element& snapshot);
  void registerUndo(std::function<void()> handler);
  void run(std::vector<Step>& from, std::vector<Step>& to);
  static std::string audioOf(int id, const Record& wave);
  std::string freeName(int bank, std::string wanted) const;
  void startNextImport();
  void startSave();
  void write(const Save& save);
  void writeIndexes(const Records& records);
  void apply(const Save& save);

  ModelTree files_;
  Tree sources_;
  Records now_;
  std::map<int, int> savedKitLives_, savedWaveLives_;
  std::map<int, Deletion> deletions_;
  std::map<int, int> kitDeletions_;
  std::set<int> begun_;              // lives of pending samples that a save has begun to write
  std::multiset<std::string> held_;  // staged audio that is still to be read
  std::vector<Step> undo_, redo_;
  Step open_;
  Step* collecting_ = nullptr;
  std::vector<Element> copied_;
  std::vector<Import> imports_;  // the first one is under way
  std::shared_ptr<Save> running_;
  HandJobs::JobId saveJob_ = 0;
  bool saveWaits_ = false;
  int last_ = 0;
  int loads_ = 0;
};

}  // namespace tamboro::test
