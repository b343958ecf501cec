#include "views/samples/WaveLoopSection.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>

#include "library/store/RolandLibrary.h"
#include "views/controls/Labels.h"
#include "views/controls/NumberField.h"
#include "views/controls/Stepper.h"
#include "views/look/LookPaint.h"
#include "views/samples/WaveListRules.h"

namespace tamboro {

namespace {

constexpr int columns = 20;    // between the two controls of a line
constexpr int titleRoom = 44;  // the column of a line's titles
constexpr int controlWidth = 96;
constexpr int valueWidth = 50;
constexpr int leading = 42;  // where the names of the rows begin
constexpr int bottom = 6;

int lineHeight() {
  const int text = QFontMetrics(Look::monospaced(TextStyle::caption)).height();
  return std::max(Look::px(26), text + 6) + 2 * ringRoom;
}

}  // namespace

WaveLoopSection::WaveLoopSection(RolandLibrary& store, WaveId id, QWidget* parent)
    : QWidget(parent), store_(store), id_(id) {
  setObjectName(QStringLiteral("waveLoopSection"));
  setAccessibleName(QStringLiteral("Loop and tempo sync settings"));
  tempo_ = makeStepper(QStringLiteral("waveTempo"), QStringLiteral("Tempo"), 200, 4000);
  tempo_->setStep(10);
  tempo_->setNotation({waveTempoText, waveTempoIn});
  beat_ = makeStepper(QStringLiteral("waveBeat"), QStringLiteral("Beat"), 0, 16);
  start_ = makeField(QStringLiteral("waveStart"), QStringLiteral("Start"));
  end_ = makeField(QStringLiteral("waveEnd"), QStringLiteral("End"));
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(Look::px(leading), 0, Look::px(12), Look::px(bottom));
  grid->setSpacing(0);
  grid->setColumnMinimumWidth(2, Look::px(columns));
  grid->setColumnStretch(5, 1);
  addControl(*grid, 0, 0, QStringLiteral("Tempo"), tempo_);
  addControl(*grid, 0, 3, QStringLiteral("Beat"), beat_);
  addControl(*grid, 1, 0, QStringLiteral("Start"), start_);
  addControl(*grid, 1, 3, QStringLiteral("End"), end_);
  connect(tempo_, &Stepper::edited, this, [this](std::int64_t value) { store_.setWaveTempo(id_, value); });
  connect(beat_, &Stepper::edited, this, [this](std::int64_t value) { store_.setWaveBeat(id_, value); });
  connect(start_, &NumberField::edited, this, [this](std::int64_t value) { store_.setWaveStart(id_, value); });
  connect(end_, &NumberField::edited, this, [this](std::int64_t value) { store_.setWaveEnd(id_, value); });
  refresh();
}

int WaveLoopSection::neededHeight() {
  return 2 * lineHeight() + Look::px(bottom);
}

Stepper* WaveLoopSection::makeStepper(const QString& name, const QString& title, std::int64_t lower,
                                      std::int64_t upper) {
  auto* stepper = new Stepper(this);
  stepper->setObjectName(name);
  stepper->setAccessibleName(title);
  stepper->setRange(lower, upper);
  stepper->setValueWidth(Look::px(valueWidth));
  return stepper;
}

NumberField* WaveLoopSection::makeField(const QString& name, const QString& title) {
  auto* field = new NumberField(name, title, this);
  field->setFixedWidth(Look::px(controlWidth));
  field->setFixedHeight(lineHeight() - 2 * ringRoom);
  return field;
}

void WaveLoopSection::addControl(QGridLayout& grid, int row, int column, const QString& title, QWidget* control) {
  auto* label =
      makeLabel(control->objectName() + QStringLiteral("Title"), title, TextStyle::caption, textRole::secondary);
  label->setMinimumWidth(Look::px(titleRoom));
  label->setBuddy(control);
  grid.addWidget(label, row, column);
  grid.addWidget(control, row, column + 1, Qt::AlignLeft | Qt::AlignVCenter);
  grid.setRowMinimumHeight(row, lineHeight());
}

/// What its controls leave, Return above all, would otherwise act on the list's row.
void WaveLoopSection::keyPressEvent(QKeyEvent* event) {
  event->accept();
}

void WaveLoopSection::refresh() {
  const Wave* wave = store_.wave(id_);
  if (!wave) return;
  tempo_->setValue(wave->tempo());
  beat_->setValue(wave->beat());
  start_->setValue(wave->start());
  end_->setValue(wave->end());
}

}  // namespace tamboro
