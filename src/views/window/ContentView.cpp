#include "views/window/ContentView.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

#include "library/CardConflict.h"
#include "library/LibraryError.h"
#include "library/store/RolandLibrary.h"
#include "views/controls/Accessible.h"
#include "views/controls/EmptyStatePanel.h"
#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Sheet.h"
#include "views/help/KeyboardShortcutsHelpView.h"
#include "views/kits/KitEditorView.h"
#include "views/kits/KitListView.h"
#include "views/look/Palette.h"
#include "views/look/Symbols.h"
#include "views/samples/WaveBrowserView.h"
#include "views/tags/TagListEditorView.h"
#include "views/window/CardLocationPill.h"
#include "views/window/ColumnSplitter.h"
#include "views/window/FolderDrop.h"
#include "views/window/NoticeStack.h"
#include "views/window/SaveButton.h"
#include "views/window/StatusLine.h"
#include "views/window/WelcomeView.h"

namespace tamboro {

namespace {

class AccentLine : public QWidget {
 public:
  AccentLine() { setFixedHeight(3); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QColor red = paletteRed;
    red.setAlphaF(0.6F);
    QPainter painter(this);
    painter.fillRect(rect(), Look::current().bar);
    painter.fillRect(rect(), red);
  }
};

/// A column under its slim title row.
Surface* makeColumn(const QString& objectName, const QString& title, QColor Look::*ground, QWidget* content) {
  auto* column = new Surface(ground);
  column->setObjectName(objectName);
  column->setAccessibleName(title);
  auto* header = makeLabel(objectName + QStringLiteral("Title"), title, TextStyle::headline);
  header->setContentsMargins(12, 0, 12, 0);
  header->setFixedHeight(Look::px(30));
  auto* rows = new QVBoxLayout(column);
  rows->setSpacing(0);
  rows->addWidget(header);
  rows->addWidget(content, 1);
  return column;
}

}  // namespace

const QString ContentView::lastKitSlotKey = QStringLiteral("ContentView.lastSelectedKitSlot");

ContentView::ContentView(RolandLibrary& store, SamplePlayer& player, const FileSystem& files, Defaults& defaults,
                         Prompts& prompts, QWidget* parent)
    : QWidget(parent), store_(store), player_(player), files_(files), defaults_(defaults), prompts_(prompts) {
  installAccessible();
  setObjectName(QStringLiteral("contentView"));
  // Before the sample list, which answers for drops on it.
  new FolderDrop(*this, files, [this](const Path& folder) { store_.openDroppedFolder(folder); });
  pages_ = new QStackedLayout(this);
  pages_->addWidget(welcome_ = new WelcomeView(store));
  pages_->addWidget(workspace_ = makeWorkspace());
  connect(&store, &RolandLibrary::published, this, [this](RolandLibrary::Property property) {
    if (property == RolandLibrary::Property::selectedKitSlot) rememberKit();
    if (property == RolandLibrary::Property::lastError) followLastError();
    if (property == RolandLibrary::Property::isLoaded) tellOfLeftovers();
  });
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

QWidget* ContentView::makeWorkspace() {
  auto* workspace = new QWidget;
  workspace->setObjectName(QStringLiteral("workspace"));
  auto* rows = new QVBoxLayout(workspace);
  rows->setSpacing(0);
  rows->addWidget(makeToolbar());
  rows->addWidget(new AccentLine);
  rows->addWidget(notices_ = new NoticeStack);
  rows->addWidget(makeColumns(), 1);
  rows->addWidget(new StatusLine(store_));
  return workspace;
}

QWidget* ContentView::makeToolbar() {
  auto* toolbar = new Surface(&Look::bar);
  toolbar->setObjectName(QStringLiteral("toolbar"));
  toolbar->setAccessibleName(QStringLiteral("Toolbar"));
  auto* tags = new QPushButton(symbolIcon(QStringLiteral("tag"), paletteBlue), QStringLiteral("Tags"));
  tags->setObjectName(QStringLiteral("tagsButton"));
  tags->setFocusPolicy(Qt::TabFocus);
  setHelp(*tags, QStringLiteral("Manage sample tags (⌘T)"));
  connect(tags, &QPushButton::clicked, this, [this] { setShowingTagEditor(true); });
  auto* tagsKey = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_T), tags);
  tagsKey->setContext(Qt::ApplicationShortcut);
  connect(tagsKey, &QShortcut::activated, tags, &QPushButton::click);
  auto* saveButton = new SaveButton(store_);
  connect(saveButton, &QPushButton::clicked, this, &ContentView::save);

  auto* row = new QHBoxLayout(toolbar);
  row->setContentsMargins(12, 0, 12, 0);
  row->addWidget(makeKitListButton());
  row->addWidget(new CardLocationPill(store_));
  row->addStretch(1);
  row->addWidget(tags);
  row->addWidget(saveButton);
  toolbar->setFixedHeight(std::max(Look::px(42), saveButton->sizeHint().height() + 8));
  return toolbar;
}

QPushButton* ContentView::makeKitListButton() {
  auto* button = new QPushButton(symbolIcon(QStringLiteral("sidebar.left")), {});
  button->setObjectName(QStringLiteral("kitListButton"));
  button->setAccessibleName(QStringLiteral("Kit List"));
  button->setFocusPolicy(Qt::TabFocus);
  button->setCheckable(true);
  button->setChecked(true);
  setHelp(*button, QStringLiteral("Show/hide the kit list (F9)"));
  // A click leaves the keyboard where it is.
  connect(button, &QPushButton::toggled, this, [this](bool on) { columns_->setLeftShown(on); });
  connect(this, &ContentView::kitListShownChanged, button, &QPushButton::setChecked);
  return button;
}

QWidget* ContentView::makeColumns() {
  const QString kits = QStringLiteral("Kits");
  const QString samples = QStringLiteral("Sample Library");
  // One after another: the order in which they are made is the order of the Tab key.
  QWidget* left =
      makeColumn(QStringLiteral("kitColumn"), kits, &Look::sidebar, kits_ = new KitListView(store_, prompts_));
  QWidget* middle = makeMiddle();
  QWidget* right = makeColumn(QStringLiteral("sampleColumn"), samples, &Look::base,
                              samples_ = new WaveBrowserView(store_, player_, files_, prompts_));
  columns_ = new ColumnSplitter(left, middle, right);
  connect(columns_, &ColumnSplitter::leftShownChanged, this, &ContentView::kitListShownChanged);
  connect(columns_, &ColumnSplitter::keyboardLeavesLeft, kit_, &KitEditorView::takeKeyboard);
  connect(kits_, &KitListView::handsKeyboardOn, kit_, &KitEditorView::takeKeyboard);
  return columns_;
}

QWidget* ContentView::makeMiddle() {
  auto* column = new QWidget;
  column->setObjectName(QStringLiteral("kitEditorColumn"));
  column->setAccessibleName(QStringLiteral("Kit"));
  middle_ = new QStackedLayout(column);
  middle_->addWidget(noKit_ = new EmptyStatePanel(QStringLiteral("Select a Kit"), QStringLiteral("square.grid.3x3")));
  middle_->addWidget(kit_ = new KitEditorView(store_, player_, prompts_));
  return column;
}

void ContentView::refresh() {
  QWidget* page = store_.isLoaded() ? workspace_ : static_cast<QWidget*>(welcome_);
  if (pages_->currentWidget() != page) {
    pages_->setCurrentWidget(page);
    page->setFocus();  // else the first button of the toolbar gets it
    kits_->appear();   // a narrow window hides the list, and no kit would open
  }
  const Kit* kit = store_.selectedKit();
  middle_->setCurrentWidget(kit ? kit_ : static_cast<QWidget*>(noKit_));
  kit_->setKit(kit ? std::optional(kit->slot) : std::nullopt);
  followShortcutsHelp();
}

/// With a card open no welcome screen tells why another didn't open.
void ContentView::followLastError() {
  const QString key = QStringLiteral("openingFailed");
  const auto& error = store_.lastError();
  if (error && store_.isLoaded())
    notices_->put(key, {.text = *error, .detail = store_.lastErrorDetail()});
  else
    notices_->remove(key);
}

/// They aren't removed here: after a cut, clusters of theirs can belong to files in place, and only a check of the
/// whole file system tells.
void ContentView::tellOfLeftovers() {
  const QString key = QStringLiteral("leftovers");
  if (store_.leftovers().count == 0) return notices_->remove(key);
  notices_->put(key, {.text = leftoversText(),
                      .detail = QStringLiteral("Don't delete them by hand: have the card's file system checked and "
                                               "repaired first, on this computer or another one.")});
}

void ContentView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  window()->setWindowTitle(QStringLiteral("Tamboro"));
  if (hasAppeared_) return;
  hasAppeared_ = true;
  QMetaObject::invokeMethod(this, &ContentView::restore, Qt::QueuedConnection);
}

void ContentView::restore() {
  // In one go, so that no list's own first selection gets in between and overwrites the remembered kit.
  store_.restoreFromBookmark();
  if (!store_.selectedKitSlot())
    if (const auto slot = defaults_.integer(lastKitSlotKey)) store_.setSelectedKitSlot(*slot);
}

void ContentView::rememberKit() {
  if (const auto slot = store_.selectedKitSlot()) defaults_.setInteger(lastKitSlotKey, *slot);
}

void ContentView::save() {
  startSave(RolandLibrary::ChangedFiles::refuse);
}

void ContentView::startSave(RolandLibrary::ChangedFiles changed) {
  store_.save(
      [this, alive = QPointer<ContentView>(this)](const std::exception_ptr& error) {
        if (alive && error) tellOfFailedSave(error);
      },
      changed);
}

QString ContentView::leftoversText() const {
  const Leftovers& left = store_.leftovers();
  return QStringLiteral("Saves that were cut off have left %1 on this card (%2).")
      .arg(countText(left.count, QStringLiteral("item")),
           locale().formattedDataSize(static_cast<qint64>(left.bytes), 1, QLocale::DataSizeSIFormat));
}

void ContentView::tellOfFailedSave(const std::exception_ptr& error) {
  showingExportError_ = errorText(error);
  Alert alert{.title = QStringLiteral("Couldn't Save"), .text = *showingExportError_};
  if (isForRoom(error) && store_.leftovers().count > 0) alert.text += QStringLiteral("\n\n") + leftoversText();
  if (isChangedSinceRead(error)) {
    alert.text += QStringLiteral(
        "\n\n“Read Again” takes the card as it is now: your unsaved changes go. “Save Anyway” writes yours: what "
        "others "
        "have changed in these files goes.");
    alert.buttons.push_back({QStringLiteral("Read Again"), AlertButton::Role::destructive});
    alert.buttons.push_back({QStringLiteral("Save Anyway"), AlertButton::Role::destructive});
  }
  prompts_.alert(this, alert, [this, alive = QPointer<ContentView>(this)](std::size_t button) {
    constexpr std::size_t readAgain = 1;
    constexpr std::size_t saveAnyway = 2;
    if (!alive) return;
    showingExportError_.reset();
    if (button == readAgain) store_.readAgain();
    if (button == saveAnyway) startSave(RolandLibrary::ChangedFiles::replace);
  });
}

// ---- columns and the keyboard

bool ContentView::isKitListShown() const {
  return columns_->isLeftShown();
}

void ContentView::setKitListShown(bool on) {
  columns_->setLeftShown(on);
  if (on) kits_->takeKeyboard();
}

bool ContentView::isInUse(const QWidget& column) const {
  return column.isAncestorOf(QApplication::focusWidget());
}

void ContentView::search() {
  isInUse(*kits_) ? kits_->search() : samples_->search();
}

void ContentView::walkColumns(int step) {
  struct Column {
    const QWidget& widget;
    std::function<void()> takeKeyboard;
  };
  std::vector<Column> shown;
  if (isKitListShown()) shown.push_back({*kits_, [this] { kits_->takeKeyboard(); }});
  if (store_.selectedKit()) shown.push_back({*kit_, [this] { kit_->takeKeyboard(); }});
  shown.push_back({*samples_, [this] { samples_->takeKeyboard(); }});
  const auto inUse = std::ranges::find_if(shown, [this](const Column& column) { return isInUse(column.widget); });
  // From anywhere else to the first or the last.
  const auto count = static_cast<std::ptrdiff_t>(shown.size());
  const auto place = inUse != shown.end() ? inUse - shown.begin() : step > 0 ? -1 : count;
  shown[static_cast<std::size_t>((place + step + count) % count)].takeKeyboard();
}

// ---- sheets

void ContentView::setShowingTagEditor(bool on) {
  if (on && !tagEditor_) {
    tagEditor_ = new TagListEditorView(store_, this);
    connect(tagEditor_, &QDialog::finished, this, [this] { tagEditor_.clear(); });
    tagEditor_->open();
  } else if (!on && tagEditor_) {
    tagEditor_->close();
  }
}

void ContentView::followShortcutsHelp() {
  if (store_.showingShortcutsHelp() && !shortcutsHelp_) {
    shortcutsHelp_ = new KeyboardShortcutsHelpView(this);
    connect(shortcutsHelp_, &QDialog::finished, this, [this] {
      shortcutsHelp_.clear();  // the closed sheet lives on for a while, and help can be asked for again meanwhile
      store_.setShowingShortcutsHelp(false);
    });
    shortcutsHelp_->open();
  } else if (!store_.showingShortcutsHelp() && shortcutsHelp_) {
    shortcutsHelp_->close();
  }
}

}  // namespace tamboro
