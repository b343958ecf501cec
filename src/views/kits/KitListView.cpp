#include "views/kits/KitListView.h"

#include <QAccessible>
#include <QFile>
#include <QPushButton>
#include <QVBoxLayout>

#include "library/LibraryError.h"
#include "library/store/RolandLibrary.h"
#include "views/controls/CardText.h"
#include "views/controls/ContextMenu.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/SearchField.h"
#include "views/controls/Surface.h"
#include "views/kits/KitRowDelegate.h"
#include "views/kits/NewKitSheet.h"
#include "views/lists/RowList.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"

namespace tamboro {

KitListView::KitListView(RolandLibrary& store, Prompts& prompts, QWidget* parent)
    : QWidget(parent), store_(store), prompts_(prompts) {
  setObjectName(QStringLiteral("kitListView"));
  search_ = new SearchField(QStringLiteral("kitSearch"), QStringLiteral("Search kits"));
  search_->setContentsMargins(8, 8, 8, 8);
  delegate_ = new KitRowDelegate;
  list_ =
      new RowList(new RowModel(1, [this](const RowKey& row, int, int role) { return value(row, role); }), delegate_);
  list_->setObjectName(QStringLiteral("kitList"));
  list_->setAccessibleName(QStringLiteral("Kits"));
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  // Each kit that is opened gives the keyboard to its pads: the arrow keys walk on and Return opens.
  list_->setCursorSelects(false);
  auto* rows = new QVBoxLayout(this);
  rows->setSpacing(0);
  rows->addWidget(search_);
  rows->addWidget(list_, 1);
  rows->addWidget(makeStrip());
  connect(search_, &SearchField::textChanged, this, [this] {
    showRows();
    shownSelection_.reset();
    followSelection();
  });
  connect(list_, &RowList::selectionEdited, this, &KitListView::selectionEdited);
  connect(list_, &RowList::rowPressed, this, [this](const RowKey& row) { select(row.record); });
  connect(list_, &RowList::rowActivated, this, &KitListView::activated);
  connect(list_, &RowList::rowDoubleClicked, this, &KitListView::doubleClicked);
  connect(list_, &RowList::menuRequested, this, &KitListView::openMenu);
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

QWidget* KitListView::makeStrip() {
  auto* strip = new Surface(&Look::controlBackground, Qt::TopEdge);
  auto* button = new QPushButton(symbolIcon(QStringLiteral("plus")), QStringLiteral("New Kit"));
  button->setObjectName(QStringLiteral("newKitButton"));
  connect(button, &QPushButton::clicked, this, &KitListView::setShowingNewKitSheet);
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(8, 8, 8, 8);
  row->addWidget(button);
  return strip;
}

// ---- what the rows show

QVariant KitListView::value(const RowKey& row, int role) const {
  if (row.kind == RowKey::Kind::header) {
    if (role != Qt::DisplayRole) return {};
    return row.section == recent ? QStringLiteral("Recent") : QStringLiteral("All Kits");
  }
  const KitRowValues* kit = findKitRow(kits_, row.record);
  return kit ? kitValue(*kit, row, role) : QVariant();
}

QVariant KitListView::kitValue(const KitRowValues& kit, const RowKey& row, int role) const {
  switch (role) {
    case Qt::DisplayRole:
      // What is typed finds a kit's own row.
      return row.section == all ? QVariant(kitDisplayName(kit.name)) : QVariant();
    case Qt::AccessibleTextRole:
      return kitSpokenText(kit);
    case rowRole::accessible:
      return static_cast<int>(QAccessible::Button);
    case rowRole::flags:
      // Each step of the cursor through the recent kits would reorder them under it: they are only pressed.
      return row.section == recent ? QVariant((Qt::ItemIsEnabled | Qt::ItemNeverHasChildren).toInt()) : QVariant();
    case rowRole::isEcho:
      return row.section == recent && store_.selectedKitSlot() == row.record;
    case kitRole::slot:
      return kitSlotText(kit.slot);
    case kitRole::name:
      return kitDisplayName(kit.name);
    case kitRole::subtitle:
      return kit.subName;
    case kitRole::isDirty:
      return kit.isDirty;
    default:
      return {};
  }
}

void KitListView::refresh() {
  showRows();
  followSelection();
}

void KitListView::showRows() {
  std::vector<KitRowValues> values = kitRowValues(store_.kits(), kits_, userDottedI());
  std::set<RowKey> changed;
  for (const KitRowValues& kit : values) {
    const KitRowValues* old = findKitRow(kits_, kit.slot);
    if (old && old->name == kit.name && old->subName == kit.subName && old->isDirty == kit.isDirty) continue;
    changed.insert({recent, kit.slot});
    changed.insert({all, kit.slot});
  }
  kits_ = std::move(values);
  const QString searchText = search_->text();
  const std::vector<Slot> recents = recentKits(kits_, store_.recentKitSlots(), searchText);
  std::vector<RowKey> rows;
  if (!recents.empty()) {
    rows.push_back({recent, 0, RowKey::Kind::header});
    for (const Slot slot : recents)
      rows.push_back({recent, slot});
    rows.push_back({all, 0, RowKey::Kind::header});
  }
  for (const Slot slot : filteredKits(kits_, searchText, userDottedI()))
    rows.push_back({all, slot});
  list_->setRows(std::move(rows), changed);
}

// ---- selection

void KitListView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  appear();
}

void KitListView::appear() {
  if (hasAppeared_ || !store_.isLoaded()) return;
  hasAppeared_ = true;
  if (!store_.selectedKitSlot() && !store_.kits().empty()) store_.setSelectedKitSlot(store_.kits().front().slot);
  refresh();
}

void KitListView::followSelection() {
  const std::optional<Slot> slot = store_.selectedKitSlot();
  std::set<RowKey> keys;
  if (slot) keys.insert({all, *slot});
  list_->setSelectedKeys(keys);
  if (slot && slot != shownSelection_ && list_->rows().indexOf({all, *slot}).isValid()) list_->reveal({all, *slot});
  shownSelection_ = slot;
}

void KitListView::select(Slot slot) {
  shownSelection_ = slot;  // it is in sight already
  store_.setSelectedKitSlot(slot);
}

void KitListView::selectionEdited() {
  const std::set<RowKey> keys = list_->selectedKeys();
  if (keys.empty())
    followSelection();  // a kit is left for another one only
  else
    select(keys.begin()->record);
}

void KitListView::takeKeyboard() {
  list_->setFocus(Qt::ShortcutFocusReason);
}

void KitListView::search() {
  search_->setFocus(Qt::ShortcutFocusReason);
}

// ---- what is done to a kit

void KitListView::activated(const RowKey& row, Qt::Key key) {
  switch (key) {
    case Qt::Key_Space:
    case Qt::Key_Return:
      select(row.record);
      Q_EMIT handsKeyboardOn();
      return;
    case Qt::Key_F2:
      if (QLineEdit* open = list_->field(row)) {
        list_->reveal(row);
        return open->setFocus();  // with what was typed there
      }
      return rename(row);
    default:
      return confirmDelete(row.record);
  }
}

void KitListView::doubleClicked(const RowKey& row, const QPoint& place) {
  const QModelIndex index = list_->rows().indexOf(row);
  if (!index.isValid() || list_->field(row)) return;
  if (delegate_->nameLine(list_->visualRect(index).size(), list_->layoutDirection(), index).contains(place))
    rename(row);
}

void KitListView::openMenu(const RowKey& row, const QPoint& position) {
  const Slot slot = row.record;
  auto* menu = new ContextMenu(QStringLiteral("kitMenu"), QStringLiteral("Kit"), this);
  menu->add("duplicateKit", QStringLiteral("Duplicate Kit"),
            QStringLiteral("Make a copy of this kit with all its pads"), [this, slot] { duplicateKit(slot); });
  menu->add("copyPads", QStringLiteral("Copy Pads"), QStringLiteral("Copy all pads from this kit"),
            [this, slot] { store_.copyPads(slot); });
  if (store_.copiedPads())
    menu->add("pastePads", QStringLiteral("Paste Pads"), QStringLiteral("Paste the copied pads here"),
              [this, slot] { store_.pasteCopiedPads(slot); });
  menu->addSeparator();
  menu->add("renameKit", QStringLiteral("Rename"), QStringLiteral("Double-click to rename directly"),
            [this, row] { rename(row); });
  menu->add("exportKit", QStringLiteral("Export Kit…"),
            QStringLiteral("Save this kit and the samples it uses as a standalone folder, for backup or sharing"),
            [this, slot] { chooseExportFolder(slot); });
  menu->addSeparator();
  menu->addDestructive("deleteKit", QStringLiteral("Delete Kit"),
                       QStringLiteral("This can't be undone until you save to SPD-SX"),
                       [this, slot] { confirmDelete(slot); });
  menu->popup(position);
}

void KitListView::rename(const RowKey& row) {
  const Kit* kit = store_.kit(row.record);
  if (!kit) return;
  list_->openField(row,
                   {.objectName = QStringLiteral("kitNameField"),
                    .accessibleName = QStringLiteral("Kit name"),
                    .placeholder = QStringLiteral("Kit Name"),
                    .text = cardText(kit->name())},
                   [this, row](const QString& name) { store_.setKitName(row.record, name.toStdString()); });
}

void KitListView::duplicateKit(Slot slot) {
  if (const auto created = store_.createKit(slot, false)) store_.setSelectedKitSlot(created);
}

void KitListView::setShowingNewKitSheet() {
  auto* sheet = new NewKitSheet(
      store_, [this](Slot slot) { store_.setSelectedKitSlot(slot); }, this);
  sheet->open();
}

void KitListView::confirmDelete(Slot slot) {
  const Kit* kit = store_.kit(slot);
  if (!kit) return;
  const Alert question{.title = kitDeleteTitle(cardText(kit->name())),
                       .text = QStringLiteral("This can't be undone until you save to SPD-SX."),
                       .buttons = {{QStringLiteral("Delete"), AlertButton::Role::destructive},
                                   {QStringLiteral("Cancel"), AlertButton::Role::cancel}}};
  prompts_.alert(this, question, [this, slot, alive = QPointer<KitListView>(this)](std::size_t button) {
    if (alive && button == 0) deleteKit(slot);
  });
}

void KitListView::deleteKit(Slot slot) {
  store_.deleteKit(slot);
  if (store_.selectedKitSlot() != slot) return;
  store_.setSelectedKitSlot(store_.kits().empty() ? std::nullopt : std::optional(store_.kits().front().slot));
}

void KitListView::chooseExportFolder(Slot slot) {
  prompts_.chooseFolder(
      this, {QStringLiteral("Export"), QStringLiteral("Choose a folder to export the kit to")},
      [this, slot, alive = QPointer<KitListView>(this)](const std::optional<std::filesystem::path>& folder) {
        if (alive && folder) exportKit(slot, *folder);
      });
}

void KitListView::exportKit(Slot slot, const std::filesystem::path& folder) {
  const Kit* kit = store_.kit(slot);
  if (!kit) return;
  const QString name = kitExportFolderName(slot, cardText(kit->name()));
  store_.exportKit(slot, folder / QFile::encodeName(name).toStdString(),
                   [this, alive = QPointer<KitListView>(this)](const std::exception_ptr& error) {
                     if (alive && error)
                       prompts_.alert(this, {.title = QStringLiteral("Couldn't Export"), .text = errorText(error)},
                                      [](std::size_t) {});
                   });
}

}  // namespace tamboro
