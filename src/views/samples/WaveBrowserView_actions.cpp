// What is done to a sample from its row.

#include <QActionGroup>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

#include "audio/SamplePlayer.h"
#include "library/store/RolandLibrary.h"
#include "views/controls/CardText.h"
#include "views/controls/ContextMenu.h"
#include "views/controls/Labels.h"
#include "views/lists/RowList.h"
#include "views/samples/BatchRenameSheet.h"
#include "views/samples/WaveColumn.h"
#include "views/samples/WaveImports.h"

namespace tamboro {

void WaveBrowserView::cellPressed(const RowKey& row, int column) {
  const auto press = waveColumns[static_cast<std::size_t>(column)].press;
  if (press) std::invoke(press, this, row);
}

void WaveBrowserView::activated(const RowKey& row, Qt::Key key) {
  switch (key) {
    case Qt::Key_Space:
      return togglePlaying(row);
    case Qt::Key_Return:
      return addToPad(row);
    case Qt::Key_F2:
      return rename(row);
    default:
      return confirmDelete(row);
  }
}

void WaveBrowserView::doubleClicked(const RowKey& row, const QPoint& place) {
  const QRect cell = list_->cellRect(row, waveColumn("name"));
  const bool isOnName = place.x() >= cell.left() && place.x() <= cell.right();
  if (isOnName && !list_->field(row)) rename(row);
}

void WaveBrowserView::togglePlaying(const RowKey& row) {
  const WaveId id = row.record;
  if (player_.playingIndex() == id) return player_.stop();
  const Wave* wave = store_.wave(id);
  const auto location = wave ? store_.audioURL(*wave) : std::nullopt;
  if (location) player_.play(*location, id);
}

void WaveBrowserView::addToPad(const RowKey& row) {
  if (const auto slot = store_.selectedKitSlot()) store_.setPadSound(*slot, store_.selectedPadIndex(), row.record);
}

void WaveBrowserView::toggleLoopSettings(const RowKey& row) {
  const WaveId id = row.record;
  const RowKey section{0, id, RowKey::Kind::detail};
  const int before = list_->cellRect(row, waveColumn("name")).y();
  const bool isOpened = showLoopSettings_.erase(id) == 0;
  if (isOpened) showLoopSettings_.insert(id);
  showRows({id});
  // The button stays under the pointer, and what it opened is in sight.
  QScrollBar& bar = *list_->verticalScrollBar();
  bar.setValue(bar.value() + list_->cellRect(row, waveColumn("name")).y() - before);
  if (isOpened) list_->reveal(section);
}

void WaveBrowserView::rename(const RowKey& row) {
  if (QLineEdit* open = list_->field(row)) {
    list_->reveal(row);
    return open->setFocus();  // with what was typed there
  }
  const Wave* wave = store_.wave(row.record);
  if (!wave) return;
  list_->openField(row,
                   {.objectName = QStringLiteral("waveNameField"),
                    .accessibleName = QStringLiteral("Name"),
                    .placeholder = QStringLiteral("Name"),
                    .text = cardText(wave->name())},
                   [this, row](const QString& name) { store_.setWaveName(row.record, name.toStdString()); });
}

// ---- menus

void WaveBrowserView::openTagMenu(const RowKey& row) {
  const Wave* wave = store_.wave(row.record);
  if (!wave || tagTitles_.empty()) return;
  auto* menu = new QMenu(window());
  menu->setObjectName(QStringLiteral("waveTagMenu"));
  menu->setAccessibleName(QStringLiteral("Tag"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  // Each entry that comes is looked for among those that are there: a list of thousands goes in parts.
  constexpr std::size_t most = 500;
  QAction* current = nullptr;
  if (tagTitles_.size() <= most) {
    current = addTags(*menu, 0, tagTitles_.size(), row.record);
  } else {
    for (std::size_t first = 0; first < tagTitles_.size(); first += most) {
      const std::size_t end = std::min(first + most, tagTitles_.size());
      QMenu* part = menu->addMenu(QStringLiteral("%1 – %2").arg(first).arg(end - 1));
      connect(part, &QMenu::aboutToShow, this, [this, part, first, end, id = row.record] {
        if (part->isEmpty()) addTags(*part, first, end, id);
      });
      if (wave->tag() >= static_cast<std::int64_t>(first)) current = part->menuAction();
    }
  }
  // The current tag's entry covers the cell, as in a picker.
  const QRect cell = list_->cellRect(row, waveColumn("tag"));
  menu->setMinimumWidth(cell.width());
  menu->setActiveAction(current);  // the arrow keys begin there; told later, it would scroll the open menu
  menu->popup(list_->viewport()->mapToGlobal(cell.topLeft()), current);
}

/// Adds the tags from `first` on to the menu; the sample's own entry, if it is among them.
QAction* WaveBrowserView::addTags(QMenu& menu, std::size_t first, std::size_t end, WaveId id) {
  const Wave* wave = store_.wave(id);
  auto* group = new QActionGroup(&menu);
  QAction* current = nullptr;
  for (std::size_t tag = first; tag < std::min(end, tagTitles_.size()); ++tag) {
    QString title = tagTitles_[tag];
    QAction* entry = group->addAction(menu.addAction(title.replace(QLatin1Char('&'), QStringLiteral("&&"))));
    entry->setCheckable(true);
    entry->setData(static_cast<qlonglong>(tag));
    if (wave && static_cast<std::int64_t>(tag) == wave->tag()) (current = entry)->setChecked(true);
  }
  connect(group, &QActionGroup::triggered, this, [this, id](const QAction* entry) {
    const Wave* chosen = store_.wave(id);
    const std::int64_t tag = entry->data().toLongLong();
    if (chosen && chosen->tag() != tag) store_.setWaveTag(id, tag);
  });
  return current;
}

void WaveBrowserView::openMenu(const RowKey& row, const QPoint& position) {
  const WaveId id = row.record;
  auto* menu = new ContextMenu(QStringLiteral("waveMenu"), QStringLiteral("Sound"), this);
  menu->add("addToPad", QStringLiteral("Add to Selected Pad"), addHelp_, [this, row] { addToPad(row); });
  menu->add("copySound", QStringLiteral("Copy Sound"), QStringLiteral("Copy to paste onto another pad later (⌘V)"),
            [this, id] { store_.setCopiedWaveIndex(id); });
  menu->add("duplicateSound", QStringLiteral("Duplicate Sound"),
            QStringLiteral("Make a copy of this sound with a new name"),
            [this, id] { store_.duplicateWave(id, [](const std::exception_ptr&) {}); });
  menu->popup(position);
}

// ---- deleting, dragging, renaming many

void WaveBrowserView::confirmDelete(const RowKey& row) {
  const WaveId id = row.record;
  const Wave* wave = store_.wave(id);
  if (!wave || wave->isFactory() || deleteCandidate_) return;
  deleteCandidate_ = id;
  const Alert question{.title = waveDeleteTitle(cardText(wave->name()), store_.waveUsages(id)),
                       .text = {},
                       .buttons = {{QStringLiteral("Delete Sound"), AlertButton::Role::destructive},
                                   {QStringLiteral("Cancel"), AlertButton::Role::cancel}}};
  prompts_.alert(this, question, [this, alive = QPointer<WaveBrowserView>(this)](std::size_t button) {
    if (!alive) return;
    const WaveId candidate = *std::exchange(deleteCandidate_, std::nullopt);
    if (button != 0) return;
    if (player_.playingIndex() == candidate) player_.stop();  // its stop button goes with it
    store_.deleteWave(candidate);
  });
}

void WaveBrowserView::drag(const RowKey& row) {
  const WaveRowValues* wave = waves_.find(row.record);
  if (!wave) return;
  auto* payload = new QMimeData;
  payload->setText(QString::number(wave->id));
  auto* drag = new QDrag(list_);
  drag->setMimeData(payload);
  drag->setPixmap(wavePixmap(wave->name(), devicePixelRatioF()));
  drag->exec(Qt::CopyAction);
}

void WaveBrowserView::openBatchRename() {
  if (batchRename_) return;
  batchRename_ = new BatchRenameSheet(
      store_, selectedWaves(),
      [this, alive = QPointer<WaveBrowserView>(this)](std::set<WaveId> selection) {
        if (!alive) return;
        selection_ = std::move(selection);
        followSelection();
        list_->setFocus();  // the button that opened the sheet goes
        refreshStrip();
      },
      this);
  batchRename_->open();
}

// ---- importing

void WaveBrowserView::chooseImports() {
  if (showingImporter_) return;
  showingImporter_ = true;
  const QString audio = QStringLiteral("*.wav *.aif *.aiff *.aifc *.caf *.mp3 *.m4a *.flac *.ogg *.opus *.au");
  const FilesQuestion question{.title = QStringLiteral("Import Wav"),
                               .nameFilters = {QStringLiteral("Audio (%1)").arg(audio), QStringLiteral("Wav (*.wav)")}};
  prompts_.chooseFiles(this, question,
                       [this, alive = QPointer<WaveBrowserView>(this)](std::vector<std::filesystem::path> files) {
                         if (!alive) return;
                         showingImporter_ = false;
                         std::vector<SoundSource> sources;
                         for (Path& file : files)
                           sources.push_back({std::move(file)});
                         imports_->start(std::move(sources), selectedTag_.value_or(0));
                       });
}

void WaveBrowserView::importDropped(std::vector<SoundSource> sources, std::optional<Path> folder) {
  droppedFolder_ = std::move(folder);
  imports_->start(std::move(sources), selectedTag_.value_or(0));
}

/// Without a sound for the list a folder was meant for the window, which tells what is wrong with it.
void WaveBrowserView::foundNothing() {
  if (droppedFolder_) return store_.openDroppedFolder(*droppedFolder_);
  importError_ = QStringLiteral("There are no .wav files in the dropped folders.");
  showImportError();
}

void WaveBrowserView::showImportError() {
  if (showingImportError_ || !importError_) return;
  showingImportError_ = true;
  // One alert at a time: a failure while it is up is told by the next one, the last of several.
  const QString shown = *std::exchange(importError_, std::nullopt);
  prompts_.alert(this, {.title = QStringLiteral("Couldn't Import"), .text = shown},
                 [this, alive = QPointer<WaveBrowserView>(this)](std::size_t) {
                   if (!alive) return;
                   showingImportError_ = false;
                   showImportError();
                 });
}

}  // namespace tamboro
