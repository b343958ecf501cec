#pragma once

#include <QPointer>
#include <QWidget>
#include <tuple>

#include "views/controls/Prompts.h"
#include "views/lists/RowModel.h"
#include "views/samples/WaveListRules.h"

class QLabel;
class QPushButton;

namespace tamboro {

class BatchRenameSheet;
class ElidedLabel;
class FileSystem;
class MenuPicker;
class RolandLibrary;
class RowList;
class SamplePlayer;
class SearchField;
struct SoundSource;
class WaveImports;

/// The card's samples: searched, filtered, played, renamed, tagged, imported, and handed to pads.
class WaveBrowserView : public QWidget {
  Q_OBJECT

 public:
  WaveBrowserView(RolandLibrary& store, SamplePlayer& player, const FileSystem& files, Prompts& prompts,
                  QWidget* parent = nullptr);

  const std::set<WaveId>& selection() const { return selection_; }
  /// To the list.
  void takeKeyboard();
  void search();

  // What a press on a row's controls does.
  void togglePlaying(const RowKey& row);
  void openTagMenu(const RowKey& row);
  void addToPad(const RowKey& row);
  void confirmDelete(const RowKey& row);
  void toggleLoopSettings(const RowKey& row);

 private:
  QWidget* makeFilterBar();
  QWidget* makeList();
  QWidget* makeStrip();
  static QVariant detailValue(int role);
  QVariant value(const RowKey& row, int column, int role) const;

  void refresh();
  void refreshAdding();
  bool refreshTags();
  void refreshPlaying();
  void refreshStrip();
  const std::vector<WaveId>& filteredWaves();
  void showRows(const std::set<WaveId>& changed, bool hasOtherTags = false);
  void openLoopSections();
  void followSelection();
  void selectionEdited();
  std::vector<WaveId> selectedWaves() const;

  void cellPressed(const RowKey& row, int column);
  void activated(const RowKey& row, Qt::Key key);
  void doubleClicked(const RowKey& row, const QPoint& place);
  void rename(const RowKey& row);
  QAction* addTags(QMenu& menu, std::size_t first, std::size_t end, WaveId id);
  void openMenu(const RowKey& row, const QPoint& position);
  void drag(const RowKey& row);
  void openBatchRename();
  void chooseImports();
  void importDropped(std::vector<SoundSource> sources, std::optional<std::filesystem::path> folder);
  void foundNothing();
  void showImportError();

  RolandLibrary& store_;
  SamplePlayer& player_;
  const FileSystem& files_;
  Prompts& prompts_;

  std::optional<std::int64_t> selectedTag_;
  bool showingImporter_ = false;
  std::optional<WaveId> deleteCandidate_;
  std::optional<QString> importError_;  ///< the last failure that no alert has told yet
  bool showingImportError_ = false;
  std::optional<std::filesystem::path> droppedFolder_;  ///< the first item of the last drop
  using FilterKey = std::tuple<std::size_t, QString, std::optional<std::int64_t>>;
  std::optional<std::vector<WaveId>> filteredWavesCache_;
  FilterKey filteredCacheKey_;
  std::set<WaveId> selection_;  ///< outlives filtering and the samples themselves
  std::set<WaveId> showLoopSettings_;
  WaveRows waves_;
  std::optional<TagList> readTags_;  ///< the titles come from it
  std::vector<QString> tagTitles_;
  QString addHelp_;
  bool hasKit_ = false;
  std::optional<WaveId> shownPlaying_;
  QPointer<BatchRenameSheet> batchRename_;

  WaveImports* imports_;
  SearchField* search_;
  MenuPicker* tag_;
  RowList* list_;
  QLabel* nothing_;
  QWidget* dropOutline_;
  ElidedLabel* caption_;
  ElidedLabel* progress_;
  QPushButton* renameSelected_;
};

}  // namespace tamboro
