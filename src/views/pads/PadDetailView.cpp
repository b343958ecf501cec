#include "views/pads/PadDetailView.h"

#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

#include "audio/SamplePlayer.h"
#include "model/Note.h"
#include "model/Rounding.h"
#include "views/controls/CardText.h"
#include "views/controls/DisclosureGroup.h"
#include "views/controls/Labels.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/NotePicker.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/RawEnumPicker.h"
#include "views/controls/Switch.h"
#include "views/controls/ThrottledSlider.h"
#include "views/controls/TitledRow.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"
#include "views/pads/SetAllPadSheet.h"

namespace tamboro {

namespace {

constexpr int padding = 16;
constexpr int betweenLines = 14;

QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

int menuWidth() {
  return Look::px(118) + 2 * ringRoom;
}

/// Whether its title stands before the control, in one column with those above and below.
bool isTitledRow(const PadSetting& setting) {
  using enum PadControl;
  return setting.control != level && setting.control != pan && setting.control != onOff;
}

std::vector<const PadSetting*> settingsAt(PadPlace place) {
  std::vector<const PadSetting*> found;
  for (const PadSetting& setting : padSettings)
    if (setting.place == place) found.push_back(&setting);
  return found;
}

bool isAtTheRight(const PadSetting& setting) {
  const auto grid = settingsAt(PadPlace::grid);
  return (std::ranges::find(grid, &setting) - grid.begin()) % 2 == 1 && setting.place == PadPlace::grid;
}

/// Titles of one column end where the longest does.
int titleWidth(const PadSetting& setting) {
  const QFontMetrics metrics(Look::font(TextStyle::caption));
  int widest = 0;
  for (const PadSetting& other : padSettings)
    if (isTitledRow(other) && isAtTheRight(other) == isAtTheRight(setting))
      widest = std::max(widest, metrics.horizontalAdvance(text(other.title)));
  return widest + Look::px(8);
}

QPushButton* makeButton(const QString& objectName, const QString& title, const QString& symbol) {
  auto* button = new QPushButton(symbolIcon(symbol), title);
  button->setObjectName(objectName);
  // A click must not take the arrow keys from the pads.
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

/// Setting a role repaints the label and all that follows its palette, also when it is the same one.
void setRole(QLabel& label, QPalette::ColorRole role) {
  if (label.foregroundRole() != role) label.setForegroundRole(role);
}

QString nameOf(const Wave& wave) {
  return visibleText(cardText(wave.name()));
}

}  // namespace

QString subSoundText(const RolandLibrary& store, WaveId subWave) {
  if (subWave < 0) return QStringLiteral("(none)");
  const Wave* wave = store.wave(subWave);
  return wave ? nameOf(*wave) : QStringLiteral("[%1]").arg(subWave);
}

PadDetailView::PadDetailView(RolandLibrary& store, SamplePlayer& player, QWidget* parent)
    : QWidget(parent), store_(store), player_(player) {
  setObjectName(QStringLiteral("padDetail"));
  setAccessibleName(QStringLiteral("Pad settings"));
  auto* lines = new QVBoxLayout(this);
  const int room = Look::px(padding) - ringRoom;
  lines->setContentsMargins(room, room, room, room);
  lines->setSpacing(Look::px(betweenLines) - 2 * ringRoom);
  lines->addWidget(makeHeader());
  for (const PadSetting* setting : settingsAt(PadPlace::lines))
    lines->addWidget(makeSetting(*setting));
  lines->addWidget(makeGrid());
  lines->addWidget(makeSub());
  connect(&player, &SamplePlayer::playingIndexChanged, this, &PadDetailView::refreshPlay);
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

void PadDetailView::setPad(Slot slot, int index) {
  if (slot != kitSlot_ || index != padIndex_)
    for (ThrottledSlider* slider : sliders_)
      slider->cancelDrag();
  kitSlot_ = slot;
  padIndex_ = index;
  refresh();
}

void PadDetailView::paintEvent(QPaintEvent*) {
  QColor ground(128, 128, 128);
  ground.setAlphaF(0.06F);
  QPainter painter(this);
  paintBox(painter, rect(), Look::px(10), ground);
}

QWidget* PadDetailView::makeHeader() {
  auto* header = new QWidget;
  auto* row = new QHBoxLayout(header);
  leaveRingRoom(*row);
  row->setSpacing(Look::px(8));
  title_ = makeLabel(QStringLiteral("padTitle"), {}, TextStyle::headline);
  auto* applyToAll = makeButton(QStringLiteral("applyToAllButton"), QStringLiteral("Apply to All Pads…"),
                                QStringLiteral("square.on.square"));
  setHelp(*applyToAll, QStringLiteral("Copy one or more of this pad's settings to every other pad in the kit"));
  connect(applyToAll, &QPushButton::clicked, this, &PadDetailView::openSetAllPad);
  play_ = makeButton(QStringLiteral("playButton"), QStringLiteral("Play"), QStringLiteral("play.fill"));
  play_->setMinimumWidth(Look::px(76) + 2 * ringRoom);
  connect(play_, &QPushButton::clicked, this, &PadDetailView::togglePlay);
  row->addWidget(title_, 1);
  row->addWidget(applyToAll);
  row->addWidget(play_);
  return header;
}

QWidget* PadDetailView::makeSetting(const PadSetting& setting) {
  switch (setting.control) {
    case PadControl::sound:
      return makeSound(setting);
    case PadControl::subSound:
      return makeSubSound(setting);
    case PadControl::level:
    case PadControl::pan:
      return makeSlider(setting);
    case PadControl::note:
      return makeNote(setting);
    case PadControl::onOff:
      return makeSwitch(setting);
    case PadControl::menu:
      return makeMenu(setting);
    case PadControl::openMenu:
      return makeOpenMenu(setting);
  }
  return nullptr;
}

QWidget* PadDetailView::makeSound(const PadSetting& setting) {
  auto* name = makeLabel(text(setting.name), {}, TextStyle::body);
  fills_.emplace_back([this, name](const Pad& pad) {
    const Wave* wave = waveOf(pad);
    name->setText(wave ? nameOf(*wave) : QStringLiteral("(none)"));
    setRole(*name, wave ? textRole::primary : textRole::secondary);
  });
  return makeTitledRow(text(setting.title), name, titleWidth(setting));
}

QWidget* PadDetailView::makeSubSound(const PadSetting& setting) {
  auto* name = makeLabel(text(setting.name), {}, TextStyle::body);
  fills_.emplace_back([this, name](const Pad& pad) {
    name->setText(subSoundText(store_, pad.subWave()));
    setRole(*name, pad.subWave() >= 0 ? textRole::primary : textRole::secondary);
  });
  return makeTitledRow(text(setting.title), name, titleWidth(setting));
}

QWidget* PadDetailView::makeSlider(const PadSetting& setting) {
  const elements::IntegerLeaf& leaf = setting.leaf;
  const bool isPan = setting.control == PadControl::pan;
  const ValueSlider::Scale scale{.lower = static_cast<double>(leaf.lower),
                                 .upper = static_cast<double>(leaf.upper),
                                 .zero = isPan ? static_cast<double>(leaf.fallback) : 0};
  const auto format = [isPan](double value) {
    return isPan ? QString::fromStdString(panText(truncated(value)))
                 : QString::number(static_cast<qint64>(truncated(value)));
  };
  const auto write = [this, &setting](double value) { commit(setting, truncated(value)); };
  auto* slider = new ThrottledSlider(text(setting.name),
                                     {.title = text(setting.title), .scale = scale, .format = format, .commit = write});
  sliders_.push_back(slider);
  fills_.emplace_back(
      [slider, &setting](const Pad& pad) { slider->setValue(static_cast<double>(pad.value(setting))); });
  return slider;
}

QWidget* PadDetailView::makeNote(const PadSetting& setting) {
  auto* picker = new NotePicker(titleWidth(setting), menuWidth());
  connect(picker, &NotePicker::pitchChosen, this,
          [this, &setting](int pitch) { commit(setting, noteWithPitch(pad().value(setting), pitch)); });
  connect(picker, &NotePicker::octaveChosen, this,
          [this, &setting](int octave) { commit(setting, noteWithOctave(pad().value(setting), octave)); });
  fills_.emplace_back([picker, &setting](const Pad& pad) { picker->setNote(pad.value(setting)); });
  return picker;
}

QWidget* PadDetailView::makeSwitch(const PadSetting& setting) {
  auto* control = new Switch;
  control->setObjectName(text(setting.name));
  control->setAccessibleName(text(setting.title));
  connect(control, &QCheckBox::toggled, this, [this, &setting](bool on) { commit(setting, on ? 1 : 0); });
  fills_.emplace_back([control, &setting](const Pad& pad) {
    const QSignalBlocker blocker(control);
    control->setChecked(pad.isOn(setting));
  });
  auto* cell = new QWidget;
  auto* row = new QHBoxLayout(cell);
  leaveRingRoom(*row);
  row->setSpacing(Look::px(8));
  row->addWidget(control);
  row->addWidget(makeLabel(control->objectName() + QStringLiteral("Title"), text(setting.title), TextStyle::body));
  row->addStretch();
  return cell;
}

QWidget* PadDetailView::makeMenu(const PadSetting& setting) {
  auto* picker = new MenuPicker(text(setting.name), text(setting.title));
  for (const PadSetting::Row& row : setting.namedRows)
    if (!row.text.empty()) picker->addRow(row.value, text(row.text));
  picker->addNumbers(1, setting.lastNumber);
  picker->setWidth(menuWidth());
  connect(picker, &MenuPicker::chosen, this, [this, &setting](qint64 value) { commit(setting, value); });
  fills_.emplace_back([picker, &setting](const Pad& pad) {
    picker->setValue(setting.leaf.isFlag ? pad.isOn(setting) : pad.value(setting));
  });
  return makeTitledRow(text(setting.title), picker, titleWidth(setting));
}

QWidget* PadDetailView::makeOpenMenu(const PadSetting& setting) {
  RawEnumPicker::Options options;
  for (const PadSetting::Row& row : setting.namedRows)
    if (!row.text.empty()) options.emplace_back(row.value, text(row.text));
  auto* picker = new RawEnumPicker(text(setting.name), text(setting.title), options, titleWidth(setting));
  picker->menu()->setWidth(menuWidth());
  connect(picker, &RawEnumPicker::chosen, this, [this, &setting](qint64 value) { commit(setting, value); });
  fills_.emplace_back([picker, &setting](const Pad& pad) { picker->setValue(pad.value(setting)); });
  return picker;
}

QWidget* PadDetailView::makeGrid() {
  auto* block = new QWidget;
  auto* grid = new QGridLayout(block);
  grid->setHorizontalSpacing(Look::px(20) - 2 * ringRoom);
  grid->setVerticalSpacing(Look::px(10) - 2 * ringRoom);
  for (int place = 0; const PadSetting* setting : settingsAt(PadPlace::grid)) {
    grid->addWidget(makeSetting(*setting), place / 2, place % 2);
    ++place;
  }
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  return block;
}

QWidget* PadDetailView::makeSub() {
  auto* content = new QWidget;
  auto* lines = new QVBoxLayout(content);
  lines->setSpacing(Look::px(10) - 2 * ringRoom);
  for (const PadSetting* setting : settingsAt(PadPlace::sub))
    lines->addWidget(makeSetting(*setting));
  return new DisclosureGroup(QStringLiteral("sub"), QStringLiteral("Sub"), TextStyle::body, content, Look::px(6));
}

Pad PadDetailView::pad() const {
  const Kit* kit = store_.kit(kitSlot_);
  const auto stored = kit ? kit->pad(padIndex_) : std::nullopt;
  return stored.value_or(Pad{padIndex_, SpdNode()});
}

const Wave* PadDetailView::waveOf(const Pad& pad) const {
  return pad.wave() < 0 ? nullptr : store_.wave(pad.wave());
}

void PadDetailView::commit(const PadSetting& setting, std::int64_t value) {
  store_.setPadInteger(kitSlot_, padIndex_, setting, value);
  refresh();
}

void PadDetailView::openSetAllPad() {
  if (setAllPad_) return;
  setAllPad_ = new SetAllPadSheet(store_, kitSlot_, padIndex_, this);
  setAllPad_->open();
}

void PadDetailView::togglePlay() {
  const Wave* wave = waveOf(pad());
  if (!wave) return;
  if (player_.playingIndex() == wave->id()) return player_.stop();
  if (const auto location = store_.audioURL(*wave)) player_.play(*location, wave->id());
}

void PadDetailView::refresh() {
  const Pad shown = pad();
  title_->setText(QStringLiteral("Pad %1").arg(padIndex_ + 1));
  for (const auto& fill : fills_)
    fill(shown);
  refreshPlay();
}

void PadDetailView::refreshPlay() {
  const Wave* wave = waveOf(pad());
  const bool isPlaying = wave && player_.playingIndex() == wave->id();
  play_->setVisible(wave && store_.audioURL(*wave));
  const QString title = isPlaying ? QStringLiteral("Stop") : QStringLiteral("Play");
  if (play_->text() == title) return;  // another icon would lay the view out anew at each refresh
  play_->setText(title);
  play_->setIcon(symbolIcon(isPlaying ? QStringLiteral("stop.fill") : QStringLiteral("play.fill")));
}

}  // namespace tamboro
