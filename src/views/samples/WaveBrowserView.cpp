#include "views/samples/WaveBrowserView.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

#include "audio/SamplePlayer.h"
#include "library/store/RolandLibrary.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/Labels.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/SearchField.h"
#include "views/controls/Surface.h"
#include "views/lists/RowList.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"
#include "views/look/Symbols.h"
#include "views/samples/WaveColumn.h"
#include "views/samples/WaveDrop.h"
#include "views/samples/WaveImports.h"
#include "views/samples/WaveLoopSection.h"

namespace tamboro {

namespace {

constexpr std::int64_t allTags = -1;

RowKey rowOf(WaveId id) {
  return {0, id, RowKey::Kind::record};
}

RowKey detailOf(WaveId id) {
  return {0, id, RowKey::Kind::detail};
}

/// Lies over the list while files hover there.
class DropOutline : public QWidget {
 public:
  DropOutline() {
    setObjectName(QStringLiteral("waveDropOutline"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double radius = 10;
    QPainter painter(this);
    QRectF shape = QRectF(rect()).adjusted(2, 2, -2, -2);
    // Green can't be told from a light ground.
    if (!Look::current().isDark) paintBox(painter, shape, radius, {}, QColor(0x14, 0x60, 0x2A));
    shape.adjust(1, 1, -1, -1);
    QColor veil = paletteGreen;
    veil.setAlphaF(0.08F);
    paintBox(painter, shape, radius - 1, veil, paletteGreen, 2);
  }
};

ElidedLabel* makeCaption(const QString& objectName, TextStyle style) {
  auto* caption = new ElidedLabel(Qt::ElideRight);
  caption->setObjectName(objectName);
  caption->setFont(Look::font(style));
  caption->setForegroundRole(textRole::secondary);
  return caption;
}

}  // namespace

WaveBrowserView::WaveBrowserView(RolandLibrary& store, SamplePlayer& player, const FileSystem& files, Prompts& prompts,
                                 QWidget* parent)
    : QWidget(parent),
      store_(store),
      player_(player),
      files_(files),
      prompts_(prompts),
      waves_(userDottedI()),
      imports_(new WaveImports(store, this)) {
  setObjectName(QStringLiteral("waveBrowserView"));
  auto* rows = new QVBoxLayout(this);
  rows->setSpacing(0);
  rows->addWidget(makeFilterBar());
  rows->addWidget(makeList(), 1);
  rows->addWidget(makeStrip());
  connect(&player, &SamplePlayer::playingIndexChanged, this, &WaveBrowserView::refreshPlaying);
  connect(imports_, &WaveImports::progressChanged, this, &WaveBrowserView::refreshStrip);
  connect(imports_, &WaveImports::failed, this, [this](const QString& message) {
    importError_ = message;
    showImportError();
  });
  connect(imports_, &WaveImports::foundNothing, this, &WaveBrowserView::foundNothing);
  using Property = RolandLibrary::Property;
  new QueuedRefresh(
      store, {Property::waves, Property::tagList}, [this] { refresh(); }, this);
  new QueuedRefresh(
      store, {Property::selectedKitSlot, Property::selectedPadIndex, Property::kits}, [this] { refreshAdding(); },
      this);
  refreshAdding();
  refresh();
}

QWidget* WaveBrowserView::makeFilterBar() {
  search_ = new SearchField(QStringLiteral("waveSearch"), QStringLiteral("Search"));
  tag_ = new MenuPicker(QStringLiteral("waveTagFilter"), QStringLiteral("Tag"));
  tag_->setFixedWidth(Look::px(140) + 2 * ringRoom);
  auto* bar = new QWidget;
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(8, 8, 8, 8);
  row->addWidget(search_, 1);
  row->addWidget(tag_);
  connect(search_, &SearchField::textChanged, this, [this] { showRows({}); });
  connect(tag_, &MenuPicker::chosen, this, [this](std::int64_t tag) {
    selectedTag_ = tag == allTags ? std::nullopt : std::optional(tag);
    showRows({});
  });
  return bar;
}

QWidget* WaveBrowserView::makeList() {
  list_ = new RowList(new RowModel(waveColumnCount, [this](const RowKey& row, int column,
                                                           int role) { return value(row, column, role); }),
                      new WaveRowDelegate);
  list_->setObjectName(QStringLiteral("waveList"));
  list_->setAccessibleName(QStringLiteral("Sounds"));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setMainColumn(waveColumn("name"));
  list_->setDragEnabled(true);
  nothing_ = makeLabel(QStringLiteral("noWaves"), {}, TextStyle::body, textRole::tertiary);
  nothing_->setAlignment(Qt::AlignCenter);
  nothing_->setAttribute(Qt::WA_TransparentForMouseEvents);
  dropOutline_ = new DropOutline;
  auto* area = new QWidget;
  auto* layers = new QGridLayout(area);
  for (QWidget* layer : {static_cast<QWidget*>(list_), static_cast<QWidget*>(nothing_), dropOutline_})
    layers->addWidget(layer, 0, 0);
  connect(list_, &RowList::selectionEdited, this, &WaveBrowserView::selectionEdited);
  // A press on the one selected row changes nothing there, but lets go of what a filter hides.
  connect(list_, &QAbstractItemView::pressed, this, [this] {
    if (list_->selectedKeys().size() == 1) selectionEdited();
  });
  connect(list_, &RowList::cellPressed, this, &WaveBrowserView::cellPressed);
  connect(list_, &RowList::rowActivated, this, &WaveBrowserView::activated);
  connect(list_, &RowList::rowDoubleClicked, this, &WaveBrowserView::doubleClicked);
  connect(list_, &RowList::menuRequested, this, &WaveBrowserView::openMenu);
  connect(list_, &RowList::dragRequested, this, &WaveBrowserView::drag);
  auto* drop = new WaveDrop(
      *list_, files_, [this](const Path& folder) { return store_.resolveRoot(folder).has_value(); },
      [this](std::vector<SoundSource> sources, std::optional<Path> folder) {
        importDropped(std::move(sources), std::move(folder));
      });
  connect(drop, &WaveDrop::targetedChanged, dropOutline_, &QWidget::setVisible);
  return area;
}

QWidget* WaveBrowserView::makeStrip() {
  auto* strip = new Surface(&Look::controlBackground, Qt::TopEdge);
  caption_ = makeCaption(QStringLiteral("waveCount"), TextStyle::caption);
  progress_ = makeCaption(QStringLiteral("importProgress"), TextStyle::caption2);
  renameSelected_ = new QPushButton(symbolIcon(QStringLiteral("pencil")), QStringLiteral("Rename Selected…"));
  renameSelected_->setObjectName(QStringLiteral("renameSelectedButton"));
  auto* importButton =
      new QPushButton(symbolIcon(QStringLiteral("square.and.arrow.down")), QStringLiteral("Import Wav…"));
  importButton->setObjectName(QStringLiteral("importWavButton"));
  setHelp(*importButton, QStringLiteral("Or drag .wav files directly into the list above"));
  connect(renameSelected_, &QPushButton::clicked, this, &WaveBrowserView::openBatchRename);
  connect(importButton, &QPushButton::clicked, this, &WaveBrowserView::chooseImports);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(12, 8, 8, 8);
  auto* captions = new QVBoxLayout;
  captions->setSpacing(0);
  captions->addWidget(caption_);
  captions->addWidget(progress_);
  row->addLayout(captions, 1);
  row->addWidget(renameSelected_);
  row->addWidget(importButton);
  return strip;
}

// ---- what the rows show

/// The row under a sample's: the controls that stand over it are read instead of its cells.
QVariant WaveBrowserView::detailValue(int role) {
  if (role == Qt::AccessibleTextRole) return QStringLiteral("Loop settings");
  return role == rowRole::isEmpty ? QVariant(true) : QVariant();
}

QVariant WaveBrowserView::value(const RowKey& row, int column, int role) const {
  const WaveRowValues* wave = row.kind == RowKey::Kind::record ? waves_.find(row.record) : nullptr;
  if (!wave) return detailValue(role);
  return WaveCell{.wave = *wave,
                  .tag = waveTagText(tagTitles_, wave->tag),
                  .addHelp = addHelp_,
                  .hasKit = hasKit_,
                  .isPlaying = player_.playingIndex() == wave->id,
                  .isOpen = showLoopSettings_.contains(wave->id)}
      .value(waveColumns[static_cast<std::size_t>(column)], role);
}

/// An edit of a kit goes with every step of a slider: the rows are neither read nor painted again for it.
void WaveBrowserView::refreshAdding() {
  QString help = waveAddHelp(store_.selectedKitSlot(), store_.selectedKit(), store_.selectedPadIndex());
  if (help == addHelp_) return;
  addHelp_ = std::move(help);
  if (hasKit_ != store_.selectedKitSlot().has_value()) list_->viewport()->update();
  hasKit_ = store_.selectedKitSlot().has_value();
  list_->announceColumn(waveColumn("add"));
}

void WaveBrowserView::refresh() {
  const bool hasOtherTags = refreshTags();
  const std::set<WaveId> changed = waves_.read(store_.waves());
  if (!changed.empty()) filteredWavesCache_.reset();
  showRows(changed, hasOtherTags);
}

bool WaveBrowserView::refreshTags() {
  if (readTags_ == store_.tagList() && tag_->count() > 0) return false;
  readTags_ = store_.tagList();
  std::vector<QString> titles = waveTagTitles(readTags_);
  if (titles == tagTitles_ && tag_->count() > 0) return false;
  tagTitles_ = std::move(titles);
  const QSignalBlocker blocker(tag_);
  tag_->clear();
  tag_->addRow(allTags, QStringLiteral("All Tags"));
  for (std::size_t tag = 0; tag < tagTitles_.size(); ++tag)
    tag_->addRow(static_cast<std::int64_t>(tag), tagTitles_[tag]);
  tag_->setValue(selectedTag_.value_or(allTags));
  return true;
}

void WaveBrowserView::refreshPlaying() {
  std::set<RowKey> changed;
  for (const auto& id : {shownPlaying_, player_.playingIndex()})
    if (id) changed.insert(rowOf(*id));
  shownPlaying_ = player_.playingIndex();
  list_->setRows(list_->rows().rows(), changed);
}

const std::vector<WaveId>& WaveBrowserView::filteredWaves() {
  FilterKey key{waves_.size(), search_->text(), selectedTag_};
  if (!filteredWavesCache_ || key != filteredCacheKey_)
    filteredWavesCache_ = waves_.filtered(search_->text(), selectedTag_);
  filteredCacheKey_ = std::move(key);
  return *filteredWavesCache_;
}

void WaveBrowserView::showRows(const std::set<WaveId>& changed, bool hasOtherTags) {
  const std::vector<WaveId>& shown = filteredWaves();
  // A row's loop section goes with it.
  std::erase_if(showLoopSettings_, [&](WaveId id) {
    const WaveRowValues* wave = waves_.find(id);
    return !wave || !wave->hasMeasure || std::ranges::find(shown, id) == shown.end();
  });
  std::vector<RowKey> rows;
  rows.reserve(shown.size() + showLoopSettings_.size());
  for (const WaveId id : shown) {
    rows.push_back(rowOf(id));
    if (showLoopSettings_.contains(id)) rows.push_back(detailOf(id));
  }
  std::set<RowKey> changedRows;
  if (rows == list_->rows().rows()) {  // others are shown anew as a whole
    for (const WaveId id : changed)
      changedRows.insert(changedRows.end(), rowOf(id));
    if (hasOtherTags) changedRows.insert(rows.begin(), rows.end());
  }
  list_->setRows(std::move(rows), changedRows);
  openLoopSections();
  followSelection();
  refreshStrip();
}

void WaveBrowserView::openLoopSections() {
  for (const WaveId id : showLoopSettings_) {
    if (auto* open = static_cast<WaveLoopSection*>(list_->detail(detailOf(id))))
      open->refresh();
    else
      list_->openDetail(detailOf(id), new WaveLoopSection(store_, id));
  }
}

void WaveBrowserView::refreshStrip() {
  const std::size_t rows = filteredWaves().size();
  const std::size_t selected = selectedWaves().size();
  caption_->setText(waveCountText(rows, selected));
  progress_->setVisible(store_.imports().isRunning);
  progress_->setText(waveImportText(store_.imports().done, store_.imports().total()));
  renameSelected_->setVisible(selected >= 2);
  nothing_->setVisible(rows == 0);
  nothing_->setText(waves_.size() > 0 ? QStringLiteral("No sounds found")
                                      : QStringLiteral("Import .wav files or drag them here"));
}

// ---- keyboard and selection

void WaveBrowserView::takeKeyboard() {
  list_->setFocus(Qt::ShortcutFocusReason);
}

void WaveBrowserView::search() {
  search_->setFocus(Qt::ShortcutFocusReason);
}

void WaveBrowserView::followSelection() {
  std::set<RowKey> keys;
  if (!selection_.empty()) {
    for (const WaveId id : filteredWaves())
      if (selection_.contains(id)) keys.insert(rowOf(id));
  }
  list_->setSelectedKeys(keys);
}

void WaveBrowserView::selectionEdited() {
  std::set<WaveId> shownSelected;
  for (const RowKey& row : list_->selectedKeys())
    shownSelected.insert(row.record);
  const bool isAddition = QGuiApplication::keyboardModifiers() & (Qt::ControlModifier | Qt::ShiftModifier);
  selection_ = waveSelection(selection_, filteredWaves(), shownSelected, isAddition);
  refreshStrip();
}

std::vector<WaveId> WaveBrowserView::selectedWaves() const {
  std::vector<WaveId> ids;
  for (const WaveId id : selection_)
    if (waves_.find(id)) ids.push_back(id);
  return ids;
}

}  // namespace tamboro
