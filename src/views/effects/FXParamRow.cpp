#include "views/effects/FXParamRow.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>

#include "views/controls/Labels.h"
#include "views/controls/MenuPicker.h"
#include "views/controls/TitledRow.h"
#include "views/controls/ValueSlider.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {

constexpr int nameWidth = 110;
constexpr int rangeBoxWidth = 60;
constexpr int rawBoxWidth = 40;
constexpr int gap = 8;
constexpr int rowHeight = 20;

QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

QString fxValueText(const FXParamDef::Kind& kind, std::int64_t value) {
  const QString number = QString::number(static_cast<qint64>(value));
  const auto* range = std::get_if<FXParamDef::Range>(&kind);
  return !range || range->unit.empty() ? number : number + QLatin1Char(' ') + text(range->unit);
}

int fxPosition(const FXParamDef::Kind& kind, std::int64_t value) {
  struct Position {
    std::int64_t value;
    std::int64_t operator()(const FXParamDef::Range& range) const {
      return std::clamp(value, range.lower, range.upper);
    }
    std::int64_t operator()(const FXParamDef::Raw& raw) const { return std::clamp(value, raw.lower, raw.upper); }
    std::int64_t operator()(const FXParamDef::Options& options) const {
      return std::clamp<std::int64_t>(value, 0, std::ssize(options.texts) - 1);
    }
  };
  return static_cast<int>(std::visit(Position{value}, kind));
}

FXParamRow::FXParamRow(const QString& objectName, const FXParamDef& param, OnChange onChange, QWidget* parent)
    : QWidget(parent), param_(param), onChange_(std::move(onChange)) {
  setObjectName(objectName);
  auto* name =
      makeLabel(objectName + QStringLiteral("Name"), text(param.name), TextStyle::caption, textRole::secondary);
  name->setFixedWidth(Look::px(nameWidth));
  auto* row = new QHBoxLayout(this);
  leaveRingRoom(*row);
  row->setSpacing(Look::px(gap));
  row->addWidget(name);
  if (const auto* options = std::get_if<FXParamDef::Options>(&param_.kind)) {
    addMenu(*options);
  } else if (const auto* range = std::get_if<FXParamDef::Range>(&param_.kind)) {
    addSlider(range->lower, range->upper);
    addTrailing({});
  } else if (const auto* raw = std::get_if<FXParamDef::Raw>(&param_.kind)) {
    addSlider(raw->lower, raw->upper);
    addTrailing(raw->caption);
  }
  name->setBuddy(control());
  setMinimumHeight(Look::px(rowHeight) + 2 * ringRoom);
  setValue(0);
}

void FXParamRow::addMenu(const FXParamDef::Options& options) {
  menu_ = new MenuPicker(objectName() + QStringLiteral("Menu"), text(param_.name));
  for (int position = 0; const std::string_view option : options.texts)
    menu_->addRow(position++, text(option));
  connect(menu_, &MenuPicker::chosen, this, [this](qint64 position) { onChange_(position); });
  auto* row = static_cast<QHBoxLayout*>(layout());
  row->addWidget(menu_);
  row->addStretch();
}

void FXParamRow::addSlider(std::int64_t lower, std::int64_t upper) {
  slider_ = new ValueSlider({.lower = static_cast<double>(lower), .upper = static_cast<double>(upper)});
  slider_->setObjectName(objectName() + QStringLiteral("Slider"));
  slider_->setAccessibleName(text(param_.name));
  slider_->setPageStep(std::max(1, static_cast<int>(upper - lower) / 10));
  connect(slider_, &ValueSlider::valueChanged, this, [this](int position) { onChange_(position); });
  static_cast<QHBoxLayout*>(layout())->addWidget(slider_, 1);
}

void FXParamRow::addTrailing(std::string_view caption) {
  trailing_ = new QWidget;
  auto* row = new QHBoxLayout(trailing_);
  row->setSpacing(Look::px(gap));
  text_ = makeLabel(objectName() + QStringLiteral("Value"), {}, TextStyle::caption);
  text_->setFont(Look::monospaced(TextStyle::caption));
  text_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  row->addWidget(text_);
  if (!caption.empty()) {
    caption_ =
        makeLabel(objectName() + QStringLiteral("Caption"), text(caption), TextStyle::caption2, textRole::secondary);
    caption_->setToolTip(QStringLiteral("The exact scale isn't documented by Roland — showing the raw value"));
    row->addWidget(caption_);
  }
  row->addStretch();
  static_cast<QHBoxLayout*>(layout())->addWidget(trailing_);
  boundsWidth_ = Look::px(caption_ ? rawBoxWidth : rangeBoxWidth);
  for (const int bound : {slider_->minimum(), slider_->maximum()})
    boundsWidth_ = std::max(boundsWidth_, text_->fontMetrics().horizontalAdvance(fxValueText(param_.kind, bound)));
}

QWidget* FXParamRow::control() const {
  return menu_ ? static_cast<QWidget*>(menu_) : slider_;
}

void FXParamRow::setValue(std::int64_t value) {
  const int position = fxPosition(param_.kind, value);
  if (menu_) return menu_->setValue(position);
  // The hand may have put the knob elsewhere while the store kept the value.
  if (value_ == value && slider_->value() == position) return;
  value_ = value;
  const QSignalBlocker blocker(slider_);
  slider_->setValue(position);
  const QString shown = fxValueText(param_.kind, value);
  text_->setText(shown);
  valueWidth_ = std::max(boundsWidth_, text_->fontMetrics().horizontalAdvance(shown));
  slider_->setAccessibleDescription(caption_ ? shown + QStringLiteral(", ") + caption_->text() : shown);
}

int FXParamRow::trailingWidth(int valueWidth) const {
  return caption_ ? valueWidth + Look::px(gap) + caption_->sizeHint().width() : valueWidth;
}

void FXParamRow::setTrailing(int valueWidth, int trailingWidth) {
  if (!text_) return;
  // Fixed both ways: else each new number would lay the whole column out anew.
  text_->setFixedSize(valueWidth, text_->fontMetrics().height());
  trailing_->setFixedWidth(trailingWidth);
}

}  // namespace tamboro
