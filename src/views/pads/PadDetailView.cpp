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

int menuWidth() {
  return Look::px(118) + 2 * ringRoom;
}

/// Titles of one column end where the longest does.
int titleWidth(std::initializer_list<QString> titles) {
  const QFontMetrics metrics(Look::font(TextStyle::caption));
  int widest = 0;
  for (const QString& title : titles)
    widest = std::max(widest, metrics.horizontalAdvance(title));
  return widest + Look::px(8);
}

int leadingTitleWidth() {
  return titleWidth({QStringLiteral("Sound"), QStringLiteral("Mute Group"), QStringLiteral("Note"),
                     QStringLiteral("Poly/Mono"), QStringLiteral("Output"), QStringLiteral("Sub Sound")});
}

int trailingTitleWidth() {
  return titleWidth({QStringLiteral("Trigger Type"), QStringLiteral("MIDI Channel")});
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
  lines->addWidget(makeSoundRow());
  lines->addWidget(makeVolume(QStringLiteral("padVolume"), QStringLiteral("Pad Volume"), elements::waveLevel,
                              &RolandLibrary::setPadLevel));
  lines->addWidget(
      makePan(QStringLiteral("padPan"), QStringLiteral("Pan"), elements::wavePan, &RolandLibrary::setPadPan));
  lines->addWidget(makeMuteGroup());
  lines->addWidget(makeNote());
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

QWidget* PadDetailView::makeSoundRow() {
  auto* name = makeLabel(QStringLiteral("padSound"), {}, TextStyle::body);
  fills_.emplace_back([this, name](const Pad& pad) {
    const Wave* wave = waveOf(pad);
    name->setText(wave ? nameOf(*wave) : QStringLiteral("(none)"));
    setRole(*name, wave ? textRole::primary : textRole::secondary);
  });
  return makeTitledRow(QStringLiteral("Sound"), name, leadingTitleWidth());
}

QWidget* PadDetailView::makeVolume(const QString& objectName, const QString& title, const elements::IntegerLeaf& leaf,
                                   RealSetter setter) {
  return makeSlider(objectName, title, leaf, 0, setter,
                    [](double value) { return QString::number(static_cast<qint64>(truncated(value))); });
}

QWidget* PadDetailView::makePan(const QString& objectName, const QString& title, const elements::IntegerLeaf& leaf,
                                RealSetter setter) {
  return makeSlider(objectName, title, leaf, leaf.fallback, setter,
                    [](double value) { return QString::fromStdString(panText(truncated(value))); });
}

QWidget* PadDetailView::makeSlider(const QString& objectName, const QString& title, const elements::IntegerLeaf& leaf,
                                   std::int64_t zero, RealSetter setter, std::function<QString(double)> format) {
  const ValueSlider::Scale scale{.lower = static_cast<double>(leaf.lower),
                                 .upper = static_cast<double>(leaf.upper),
                                 .zero = static_cast<double>(zero)};
  std::function<void(double)> write = [this, setter](double value) {
    commit([&] { std::invoke(setter, store_, kitSlot_, padIndex_, value); });
  };
  auto* slider = new ThrottledSlider(
      objectName, {.title = title, .scale = scale, .format = std::move(format), .commit = std::move(write)});
  sliders_.push_back(slider);
  fills_.emplace_back([slider, leaf](const Pad& pad) { slider->setValue(static_cast<double>(leaf.read(pad.node))); });
  return slider;
}

QWidget* PadDetailView::makeMuteGroup() {
  const QString title = QStringLiteral("Mute Group");
  auto* picker = new MenuPicker(QStringLiteral("muteGroup"), title);
  picker->addRow(0, QStringLiteral("Off"));
  picker->addNumbers(1, elements::muteGroup.upper);
  picker->setWidth(menuWidth());
  connect(picker, &MenuPicker::chosen, this, [this](qint64 group) {
    commit([&] { store_.setPadInteger(kitSlot_, padIndex_, elements::muteGroup, group); });
  });
  fills_.emplace_back([picker](const Pad& pad) { picker->setValue(pad.muteGroup()); });
  return makeTitledRow(title, picker, leadingTitleWidth());
}

QWidget* PadDetailView::makeNote() {
  auto* picker = new NotePicker(leadingTitleWidth(), menuWidth());
  connect(picker, &NotePicker::pitchChosen, this, [this](int pitch) {
    commit([&] { store_.setPadNote(kitSlot_, padIndex_, noteWithPitch(pad().note(), pitch)); });
  });
  connect(picker, &NotePicker::octaveChosen, this, [this](int octave) {
    commit([&] { store_.setPadNote(kitSlot_, padIndex_, noteWithOctave(pad().note(), octave)); });
  });
  fills_.emplace_back([picker](const Pad& pad) { picker->setNote(pad.note()); });
  return picker;
}

QWidget* PadDetailView::makeGrid() {
  const std::vector<QWidget*> cells{
      makeFlag(QStringLiteral("loop"), QStringLiteral("Loop"), elements::loop),
      makeFlag(QStringLiteral("tempoSync"), QStringLiteral("TempoSync"), elements::tempoSync),
      makeFlag(QStringLiteral("dynamics"), QStringLiteral("Dynamics"), elements::dynamics),
      makeFlag(QStringLiteral("reverse"), QStringLiteral("Reverse"), elements::reverse),
      makePoly(),
      makeEnum(QStringLiteral("triggerType"), QStringLiteral("Trigger Type"),
               {{0, QStringLiteral("SHOT")}, {1, QStringLiteral("GATE")}}, elements::triggerType),
      makeEnum(QStringLiteral("output"), QStringLiteral("Output"),
               {{0, QStringLiteral("Master Out")},
                {1, QStringLiteral("Kit FX1")},
                {2, QStringLiteral("Kit FX2")},
                {3, QStringLiteral("Sub Out")},
                {4, QStringLiteral("Phones Only")}},
               elements::outputAssign),
      makeMidiChannel()};
  auto* block = new QWidget;
  auto* grid = new QGridLayout(block);
  grid->setHorizontalSpacing(Look::px(20) - 2 * ringRoom);
  grid->setVerticalSpacing(Look::px(10) - 2 * ringRoom);
  for (int place = 0; QWidget * cell : cells) {
    grid->addWidget(cell, place / 2, place % 2);
    ++place;
  }
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  return block;
}

QWidget* PadDetailView::makeFlag(const QString& objectName, const QString& title, const elements::IntegerLeaf& leaf) {
  auto* control = new Switch;
  control->setObjectName(objectName);
  control->setAccessibleName(title);
  connect(control, &QCheckBox::toggled, this,
          [this, leaf](bool on) { commit([&] { store_.setPadFlag(kitSlot_, padIndex_, leaf, on); }); });
  fills_.emplace_back([control, leaf](const Pad& pad) {
    const QSignalBlocker blocker(control);
    control->setChecked(leaf.isOn(pad.node));
  });
  auto* cell = new QWidget;
  auto* row = new QHBoxLayout(cell);
  leaveRingRoom(*row);
  row->setSpacing(Look::px(8));
  row->addWidget(control);
  row->addWidget(makeLabel(objectName + QStringLiteral("Title"), title, TextStyle::body));
  row->addStretch();
  return cell;
}

QWidget* PadDetailView::makePoly() {
  const QString title = QStringLiteral("Poly/Mono");
  auto* picker = new MenuPicker(QStringLiteral("poly"), title);
  picker->addRow(1, QStringLiteral("POLY"));
  picker->addRow(0, QStringLiteral("MONO"));
  picker->setWidth(menuWidth());
  connect(picker, &MenuPicker::chosen, this,
          [this](qint64 value) { commit([&] { store_.setPadPoly(kitSlot_, padIndex_, value != 0); }); });
  fills_.emplace_back([picker](const Pad& pad) { picker->setValue(pad.isPoly() ? 1 : 0); });
  return makeTitledRow(title, picker, leadingTitleWidth());
}

QWidget* PadDetailView::makeEnum(const QString& objectName, const QString& title, const Options& options,
                                 const elements::IntegerLeaf& leaf) {
  const int width = leaf.name == elements::triggerType.name ? trailingTitleWidth() : leadingTitleWidth();
  auto* picker = new RawEnumPicker(objectName, title, options, width);
  picker->menu()->setWidth(menuWidth());
  connect(picker, &RawEnumPicker::chosen, this,
          [this, leaf](qint64 value) { commit([&] { store_.setPadInteger(kitSlot_, padIndex_, leaf, value); }); });
  fills_.emplace_back([picker, leaf](const Pad& pad) { picker->setValue(leaf.read(pad.node)); });
  return picker;
}

QWidget* PadDetailView::makeMidiChannel() {
  const QString title = QStringLiteral("MIDI Channel");
  auto* picker = new MenuPicker(QStringLiteral("midiChannel"), title);
  picker->addRow(elements::midiChannel.fallback, QStringLiteral("Global"));
  picker->addNumbers(1, 16);
  picker->setWidth(menuWidth());
  connect(picker, &MenuPicker::chosen, this, [this](qint64 channel) {
    commit([&] { store_.setPadInteger(kitSlot_, padIndex_, elements::midiChannel, channel); });
  });
  fills_.emplace_back([picker](const Pad& pad) { picker->setValue(pad.midiChannel()); });
  return makeTitledRow(title, picker, trailingTitleWidth());
}

QWidget* PadDetailView::makeSub() {
  auto* content = new QWidget;
  auto* lines = new QVBoxLayout(content);
  lines->setSpacing(Look::px(10) - 2 * ringRoom);
  auto* name = makeLabel(QStringLiteral("subSound"), {}, TextStyle::body);
  fills_.emplace_back([this, name](const Pad& pad) {
    name->setText(subSoundText(store_, pad.subWave()));
    setRole(*name, pad.subWave() >= 0 ? textRole::primary : textRole::secondary);
  });
  lines->addWidget(makeTitledRow(QStringLiteral("Sub Sound"), name, leadingTitleWidth()));
  lines->addWidget(makeVolume(QStringLiteral("subVolume"), QStringLiteral("Sub Volume"), elements::subWaveLevel,
                              &RolandLibrary::setPadSubLevel));
  lines->addWidget(
      makePan(QStringLiteral("subPan"), QStringLiteral("Sub Pan"), elements::subWavePan, &RolandLibrary::setPadSubPan));
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

template<class Edit>
void PadDetailView::commit(const Edit& edit) {
  edit();
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
