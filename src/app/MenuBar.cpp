#include "app/MenuBar.h"

#include <QApplication>
#include <algorithm>

namespace tamboro {

std::optional<Slot> slotOfKitNumber(const RolandLibrary& store, int number) {
  std::vector<Slot> slots;
  for (const Kit& kit : store.kits())
    slots.push_back(kit.slot);
  if (number < 1 || static_cast<std::size_t>(number) > slots.size()) return std::nullopt;
  std::sort(slots.begin(), slots.end());
  return slots[static_cast<std::size_t>(number) - 1];
}

MenuBar::MenuBar(RolandLibrary& store, QWidget* parent) : QMenuBar(parent), store_(store) {
  setObjectName(QStringLiteral("menuBar"));
  setAccessibleName(QStringLiteral("Menus"));
  addFileMenu();
  addEditMenu();
  addKitMenu();
  addViewMenu();
  addHelpMenu();
  connect(&store, &RolandLibrary::published, this, &MenuBar::follow);
  connect(&store.undoManager(), &UndoManager::changed, this, &MenuBar::followUndo);
  follow();
  followUndo();
}

QAction* MenuBar::addRow(QMenu* menu, const QString& objectName, const QString& title, const QKeySequence& key) {
  QAction* row = menu->addAction(title);
  row->setObjectName(objectName);
  row->setMenuRole(QAction::NoRole);
  row->setShortcut(key);
  // The keys also work while another window of the program is in front, as with one menu bar for all.
  row->setShortcutContext(Qt::ApplicationShortcut);
  return row;
}

QMenu* MenuBar::addNamedMenu(const QString& title) {
  QMenu* menu = addMenu(QLatin1Char('&') + title);
  menu->setAccessibleName(title);
  return menu;
}

void MenuBar::addFileMenu() {
  QMenu* file = addNamedMenu(QStringLiteral("File"));
  QAction* newKit = addRow(file, QStringLiteral("newKit"), QStringLiteral("New Kit"), Qt::CTRL | Qt::Key_N);
  newKit->setAutoRepeat(false);  // a key held down would fill the card, and new kits can't be undone
  connect(newKit, &QAction::triggered, this, [this] { store_.createBlankKit(); });
  QAction* open = addRow(file, QStringLiteral("openCard"), QStringLiteral("Open Card…"), Qt::CTRL | Qt::Key_O);
  open->setAutoRepeat(false);
  connect(open, &QAction::triggered, this, [this] { store_.chooseRoot(); });
  // The row only shows the key: it belongs to the Save button, and two owners would silence each other.
  const QString key = QKeySequence(Qt::CTRL | Qt::Key_S).toString(QKeySequence::NativeText);
  save_ = addRow(file, QStringLiteral("save"), QStringLiteral("Save to SPD-SX\t") + key);
  connect(save_, &QAction::triggered, this, &MenuBar::save);
  file->addSeparator();
  QAction* quit = addRow(file, QStringLiteral("quit"), QStringLiteral("Quit Tamboro"), Qt::CTRL | Qt::Key_Q);
  quit->setMenuRole(QAction::QuitRole);
  connect(quit, &QAction::triggered, qApp, &QApplication::quit);
}

void MenuBar::addEditMenu() {
  QMenu* edit = addNamedMenu(QStringLiteral("Edit"));
  undo_ = addRow(edit, QStringLiteral("undo"), QStringLiteral("Undo"), Qt::CTRL | Qt::Key_Z);
  redo_ = addRow(edit, QStringLiteral("redo"), QStringLiteral("Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
  connect(undo_, &QAction::triggered, this, [this] { store_.undoManager().undo(); });
  connect(redo_, &QAction::triggered, this, [this] { store_.undoManager().redo(); });
  edit->addSeparator();
  copySound_ = addRow(edit, QStringLiteral("copySound"), QStringLiteral("Copy Sound"));
  pasteSound_ = addRow(edit, QStringLiteral("pasteSound"), QStringLiteral("Paste Sound"));
  connect(copySound_, &QAction::triggered, this, &MenuBar::copySound);
  connect(pasteSound_, &QAction::triggered, this, &MenuBar::pasteSound);
  edit->addSeparator();
  QAction* preferences =
      addRow(edit, QStringLiteral("preferences"), QStringLiteral("Preferences…"), Qt::CTRL | Qt::Key_Comma);
  preferences->setMenuRole(QAction::PreferencesRole);
  connect(preferences, &QAction::triggered, this, &MenuBar::preferencesRequested);
}

void MenuBar::addKitMenu() {
  QMenu* kit = addNamedMenu(QStringLiteral("Kit"));
  for (int number = 1; number <= 9; ++number) {
    QAction* row = addRow(kit, QStringLiteral("goToKit%1").arg(number), QStringLiteral("Go to Kit %1").arg(number),
                          QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number)));
    connect(row, &QAction::triggered, this, [this, number] { goToKit(number); });
    goToKit_[static_cast<std::size_t>(number) - 1] = row;
  }
}

void MenuBar::addViewMenu() {
  QMenu* view = addNamedMenu(QStringLiteral("View"));
  kitList_ = addRow(view, QStringLiteral("kitList"), QStringLiteral("Kit List"), Qt::Key_F9);
  kitList_->setCheckable(true);
  kitList_->setChecked(true);
  connect(kitList_, &QAction::triggered, this, &MenuBar::kitListToggled);
  view->addSeparator();
  QAction* search = addRow(view, QStringLiteral("search"), QStringLiteral("Search"), Qt::CTRL | Qt::Key_F);
  connect(search, &QAction::triggered, this, &MenuBar::searchRequested);
  QAction* next = addRow(view, QStringLiteral("nextColumn"), QStringLiteral("Next Column"), Qt::Key_F6);
  QAction* previous =
      addRow(view, QStringLiteral("previousColumn"), QStringLiteral("Previous Column"), Qt::SHIFT | Qt::Key_F6);
  connect(next, &QAction::triggered, this, [this] { Q_EMIT columnRequested(1); });
  connect(previous, &QAction::triggered, this, [this] { Q_EMIT columnRequested(-1); });
  viewRows_ = {kitList_, search, next, previous};
  for (QAction* row : viewRows_)
    row->setShortcutContext(Qt::WindowShortcut);  // they are about the main window's columns
}

void MenuBar::addHelpMenu() {
  QMenu* help = addNamedMenu(QStringLiteral("Help"));
  QAction* guide = addRow(help, QStringLiteral("guide"), QStringLiteral("Tamboro Guide"));
  connect(guide, &QAction::triggered, this, &MenuBar::guideRequested);
  QAction* shortcuts =
      addRow(help, QStringLiteral("keyboardShortcuts"), QStringLiteral("Keyboard Shortcuts"), Qt::CTRL | Qt::Key_Slash);
  shortcuts->setShortcuts({shortcuts->shortcut(), Qt::Key_F1});
  connect(shortcuts, &QAction::triggered, this, [this] { store_.setShowingShortcutsHelp(true); });
  QAction* about = addRow(help, QStringLiteral("about"), QStringLiteral("About Tamboro"));
  about->setMenuRole(QAction::AboutRole);
  connect(about, &QAction::triggered, this, &MenuBar::aboutRequested);
  QAction* updates = addRow(help, QStringLiteral("checkForUpdates"), QStringLiteral("Check for Updates…"));
  updates->setMenuRole(QAction::ApplicationSpecificRole);
  connect(updates, &QAction::triggered, this, &MenuBar::checkForUpdatesRequested);
}

void MenuBar::follow() {
  save_->setEnabled(store_.hasUnsavedChanges());
  copySound_->setEnabled(store_.selectedWave() != nullptr);
  pasteSound_->setEnabled(store_.copiedWaveIndex() && store_.selectedKitSlot());
  for (QAction* row : viewRows_)
    row->setEnabled(store_.isLoaded());
  for (std::size_t position = 0; position < goToKit_.size(); ++position)
    goToKit_[position]->setEnabled(store_.kits().size() > position);
}

void MenuBar::followUndo() {
  const UndoManager& manager = store_.undoManager();
  const auto show = [](QAction& row, const QString& word, bool canRun, const QString& name) {
    row.setEnabled(canRun);
    row.setText(canRun && !name.isEmpty() ? word + QLatin1Char(' ') + name : word);
  };
  show(*undo_, QStringLiteral("Undo"), manager.canUndo(), manager.undoActionName());
  show(*redo_, QStringLiteral("Redo"), manager.canRedo(), manager.redoActionName());
}

void MenuBar::goToKit(int number) {
  if (const auto slot = slotOfKitNumber(store_, number)) store_.setSelectedKitSlot(slot);
}

void MenuBar::copySound() {
  if (const Wave* wave = store_.selectedWave()) store_.setCopiedWaveIndex(wave->id());
}

void MenuBar::pasteSound() {
  const auto slot = store_.selectedKitSlot();
  const auto sound = store_.copiedWaveIndex();
  if (slot && sound) store_.setPadSound(*slot, store_.selectedPadIndex(), *sound);
}

void MenuBar::save() {
  // Failures are the Save button's to report.
  if (store_.hasUnsavedChanges()) store_.save([](const std::exception_ptr&) {});
}

}  // namespace tamboro
