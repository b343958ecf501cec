#include "views/settings/PreferencesView.h"

#include <QEvent>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "views/controls/ElidedLabel.h"
#include "views/controls/FileViewer.h"
#include "views/controls/FormGroup.h"
#include "views/controls/Labels.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/Prompts.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Switch.h"
#include "views/look/LookStyle.h"

namespace tamboro {

namespace {

constexpr int groupWidth = 440;

struct Interval {
  int seconds;
  const char* label;
};
constexpr std::array intervals{Interval{15, "15 seconds"}, Interval{30, "30 seconds"}, Interval{60, "1 minute"},
                               Interval{300, "5 minutes"}};

/// The stored interval can be any number.
bool isChoice(double seconds) {
  return std::ranges::any_of(intervals, [seconds](const Interval& interval) { return seconds == interval.seconds; });
}

QPushButton* makeButton(const QString& objectName, const QString& title) {
  auto* button = new QPushButton(title);
  button->setObjectName(objectName);
  button->setAutoDefault(false);
  return button;
}

Switch* makeSwitch(const QString& objectName, const QString& accessibleName) {
  auto* made = new Switch;
  made->setObjectName(objectName);
  made->setAccessibleName(accessibleName);
  return made;
}

void setChecked(Switch& control, bool on) {
  const QSignalBlocker blocker(control);
  control.setChecked(on);
}

bool isFolder(const FileSystem& files, const Path& path) {
  try {
    return files.status(path).kind == FileKind::folder;
  } catch (const FileError&) {
    return false;
  }
}

}  // namespace

PreferencesView::PreferencesView(RolandLibrary& store, const FileSystem& files, BackgroundJobs& jobs,
                                 FileViewer& viewer, Prompts& prompts, QWidget* parent)
    : QWidget(parent), store_(store), files_(files), jobs_(jobs), viewer_(viewer), prompts_(prompts) {
  setObjectName(QStringLiteral("preferencesView"));
  setAccessibleName(QStringLiteral("Preferences"));
  auto* groups = new QVBoxLayout(this);
  groups->setContentsMargins(20, 20, 20, 20);
  groups->setSpacing(20);
  for (QWidget* group : {makeCardGroup(), makeAutosaveGroup(), makeSafetyGroup()}) {
    group->setFixedWidth(Look::px(groupWidth));
    groups->addWidget(group);
  }
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

QWidget* PreferencesView::makeCardGroup() {
  auto* group = new FormGroup(QStringLiteral("cardGroup"), QStringLiteral("SPD-SX Card"));
  cardPath_ = new ElidedLabel(Qt::ElideMiddle);
  cardPath_->setObjectName(QStringLiteral("cardPath"));
  cardPath_->setFont(Look::font(TextStyle::caption));
  cardPath_->setForegroundRole(textRole::secondary);
  cardPathRow_ = group->addRow(cardPath_);
  auto* change = makeButton(QStringLiteral("changeLocationButton"), QStringLiteral("Change Location…"));
  connect(change, &QPushButton::clicked, this, &PreferencesView::changeLocation);
  group->addRow(change, Qt::AlignLeft);
  return group;
}

QWidget* PreferencesView::makeAutosaveGroup() {
  auto* group = new FormGroup(QStringLiteral("autosaveGroup"), QStringLiteral("Autosave"));
  const QString title = QStringLiteral("Save Changes Automatically");
  autosave_ = makeSwitch(QStringLiteral("autosaveSwitch"), title);
  connect(autosave_, &Switch::toggled, this, [this](bool on) { store_.setAutoSaveEnabled(on); });
  group->addTitledRow(title, autosave_);
  interval_ = new MenuPicker(QStringLiteral("intervalPicker"), QStringLiteral("Interval"));
  for (const Interval& interval : intervals)
    interval_->addRow(interval.seconds, QString::fromLatin1(interval.label));
  interval_->setWidth(Look::px(136));  // the opened menu is as wide, and has a mark before its rows
  connect(interval_, &MenuPicker::chosen, this,
          [this](qint64 seconds) { store_.setAutoSaveInterval(static_cast<double>(seconds)); });
  intervalRow_ = group->addTitledRow(QStringLiteral("Interval"), interval_);
  return group;
}

QWidget* PreferencesView::makeSafetyGroup() {
  auto* group = new FormGroup(QStringLiteral("safetyGroup"), QStringLiteral("Safety"));
  const QString title = QStringLiteral("Back Up Card Before Saving");
  const QString remark = QStringLiteral(
      "Copies your kits, samples metadata, and tags to Documents/Tamboro Backup before every save. Doesn't include "
      "audio files.");
  backup_ = makeSwitch(QStringLiteral("backupSwitch"), title);
  backup_->setAccessibleDescription(remark);
  connect(backup_, &Switch::toggled, this, [this](bool on) { store_.setBackupBeforeSaveEnabled(on); });
  group->addTitledRow(title, backup_);
  auto* explanation = makeLabel(QStringLiteral("backupExplanation"), {}, TextStyle::caption2, textRole::secondary);
  setWrappedText(*explanation, remark, Look::px(groupWidth) - 2 * Look::px(14));
  group->addRow(explanation);
  showBackup_ = makeButton(QStringLiteral("showBackupButton"), QStringLiteral("Show Backup Folder"));
  setControlLook(*showBackup_, ControlLook::small);
  showBackup_->setEnabled(false);
  connect(showBackup_, &QPushButton::clicked, this, [this] { viewer_.showFolder(store_.defaultBackupDestination()); });
  group->addRow(showBackup_, Qt::AlignLeft);
  return group;
}

void PreferencesView::changeLocation() {
  store_.chooseRoot([this, alive = QPointer<PreferencesView>(this)] {
    if (!alive || !isVisible()) return;
    // The main window tells it too, but stands behind this one.
    QString text = store_.lastError().value_or(QString());
    if (!store_.lastErrorDetail().isEmpty()) text += QStringLiteral("\n\n") + store_.lastErrorDetail();
    prompts_.alert(this, {.title = QStringLiteral("Couldn't Open Card"), .text = text}, [](std::size_t) {});
  });
}

void PreferencesView::refresh() {
  const QString path = store_.rootPath().value_or(QString());
  cardPath_->setText(path);
  cardPath_->setToolTip(path);
  cardPathRow_->setVisible(store_.rootPath().has_value());
  setChecked(*autosave_, store_.autoSaveEnabled());
  const double seconds = store_.autoSaveInterval();
  isChoice(seconds) ? interval_->setValue(static_cast<std::int64_t>(seconds)) : interval_->setValueBetween(seconds);
  intervalRow_->setVisible(store_.autoSaveEnabled());
  setChecked(*backup_, store_.backupBeforeSaveEnabled());
  lookForBackup();
}

void PreferencesView::lookForBackup() {
  if (!isVisible()) return;
  // Documents can lie on a network volume that answers late: the form stands before the answer, and a burst of
  // changes costs two questions at most.
  looksAgain_ = isLooking_;
  if (isLooking_) return;
  isLooking_ = true;
  const auto found = std::make_shared<bool>(false);
  jobs_.start(
      [found, &files = files_, folder = store_.defaultBackupDestination()] { *found = isFolder(files, folder); },
      [this, found, alive = QPointer<PreferencesView>(this)] {
        if (!alive) return;
        isLooking_ = false;
        showBackup_->setEnabled(*found);
        if (looksAgain_) lookForBackup();
      });
}

void PreferencesView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refresh();
}

void PreferencesView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) lookForBackup();
}

}  // namespace tamboro
