#include "views/ContentView.h"

#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "library/LibraryError.h"
#include "library/RolandLibrary.h"
#include "views/CardLocationPill.h"
#include "views/ColumnSplitter.h"
#include "views/FolderDrop.h"
#include "views/KeyboardShortcutsHelpView.h"
#include "views/KitEditorView.h"
#include "views/KitListView.h"
#include "views/SaveButton.h"
#include "views/StatusLine.h"
#include "views/TagListEditorView.h"
#include "views/WaveBrowserView.h"
#include "views/WelcomeView.h"
#include "views/controls/Accessible.h"
#include "views/controls/EmptyStatePanel.h"
#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Sheet.h"
#include "views/look/Palette.h"
#include "views/look/Symbols.h"

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
    : QWidget(parent), store_(store), player_(player), defaults_(defaults), prompts_(prompts) {
  installAccessible();
  setObjectName(QStringLiteral("contentView"));
  pages_ = new QStackedLayout(this);
  pages_->addWidget(welcome_ = new WelcomeView(store));
  pages_->addWidget(workspace_ = makeWorkspace());
  connect(&store, &RolandLibrary::published, this, [this](RolandLibrary::Property property) {
    if (property == RolandLibrary::Property::selectedKitSlot) rememberKit();
  });
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  new FolderDrop(*this, files, [this](const Path& folder) { store_.openDroppedFolder(folder); });
  refresh();
}

QWidget* ContentView::makeWorkspace() {
  auto* workspace = new QWidget;
  workspace->setObjectName(QStringLiteral("workspace"));
  auto* rows = new QVBoxLayout(workspace);
  rows->setSpacing(0);
  rows->addWidget(makeToolbar());
  rows->addWidget(new AccentLine);
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
  row->addWidget(new CardLocationPill(store_));
  row->addStretch(1);
  row->addWidget(tags);
  row->addWidget(saveButton);
  toolbar->setFixedHeight(std::max(Look::px(42), saveButton->sizeHint().height() + 8));
  return toolbar;
}

QWidget* ContentView::makeColumns() {
  const QString kits = QStringLiteral("Kits");
  const QString samples = QStringLiteral("Sample Library");
  // One after another: the order in which they are made is the order of the Tab key.
  QWidget* left = makeColumn(QStringLiteral("kitColumn"), kits, &Look::sidebar, new KitListView(store_, prompts_));
  QWidget* middle = makeMiddle();
  QWidget* right =
      makeColumn(QStringLiteral("sampleColumn"), samples, &Look::base, new WaveBrowserView(store_, player_, prompts_));
  return new ColumnSplitter(left, middle, right);
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
  }
  const Kit* kit = store_.selectedKit();
  middle_->setCurrentWidget(kit ? kit_ : static_cast<QWidget*>(noKit_));
  kit_->setKit(kit ? std::optional(kit->slot) : std::nullopt);
  followShortcutsHelp();
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
  store_.save([this, alive = QPointer<ContentView>(this)](const std::exception_ptr& error) {
    if (!alive || !error) return;
    showingExportError_ = errorText(error);
    prompts_.alert(this, {.title = QStringLiteral("Couldn't Save"), .text = *showingExportError_},
                   [this, alive](std::size_t) {
                     if (alive) showingExportError_.reset();
                   });
  });
}

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
