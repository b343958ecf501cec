#include "views/effects/FXUnitView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "views/controls/MenuPicker.h"
#include "views/controls/Switch.h"
#include "views/controls/TitledRow.h"
#include "views/effects/FXParamRow.h"
#include "views/look/Look.h"
#include "views/look/LookPaint.h"
#include "views/look/Palette.h"

namespace tamboro {

namespace {
constexpr int badgePadding = 6;
constexpr int badgeRadius = 4;
}  // namespace

/// "FX1": red while the unit is on. Red can't be read on a dark window, so there it stands on a plate; the box is as
/// wide either way.
class FXUnitView::Badge : public QLabel {
 public:
  explicit Badge(const QString& text) : QLabel(text) {
    setFont(Look::font(TextStyle::boldSubheadline));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  }
  void setOn(bool on) {
    if (isOn_ == on) return;
    isOn_ = on;
    update();
  }
  QSize sizeHint() const override {
    const QFontMetrics metrics(font());
    // As wide for both units, so that what stands behind is aligned.
    const int width =
        std::max(metrics.horizontalAdvance(QStringLiteral("FX1")), metrics.horizontalAdvance(QStringLiteral("FX2")));
    return QSize(width + 1 + 2 * Look::px(badgePadding), metrics.height());
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Look& look = Look::current();
    const bool hasPlate = isOn_ && look.isDark;
    QPainter painter(this);
    if (hasPlate) paintBox(painter, rect(), badgeRadius, look.plate());
    painter.setPen(isOn_ ? paletteRed : look.secondary);
    const auto side = hasPlate ? Qt::AlignHCenter : Qt::AlignLeft;
    paintText(painter, layoutDirection(), rect(), side | Qt::AlignVCenter, text());
  }

 private:
  bool isOn_ = false;
};

FXUnitView::FXUnitView(RolandLibrary& store, int unit, QWidget* parent)
    : QWidget(parent), store_(store), unit_(unit), column_(new QVBoxLayout(this)) {
  setObjectName(named(""));
  column_->setSpacing(Look::px(10) - 2 * ringRoom);
  column_->addWidget(makeHeader());
  refresh();
}

QString FXUnitView::named(const char* part) const {
  return QStringLiteral("fx%1").arg(unit_) + QString::fromLatin1(part);
}

QWidget* FXUnitView::makeHeader() {
  const QString title = QStringLiteral("FX%1").arg(unit_);
  switch_ = new Switch;
  switch_->setObjectName(named("Switch"));
  switch_->setAccessibleName(title);
  connect(switch_, &QCheckBox::toggled, this, [this](bool on) {
    store_.setFxSwitch(kitSlot_, unit_, on);
    refresh();
  });
  badge_ = new Badge(title);
  badge_->setObjectName(named("Badge"));
  type_ = new MenuPicker(named("Type"), title + QStringLiteral(" Effect Type"));
  for (int position = 0; const FXTypeDef& type : fxTypes)
    type_->addRow(position++, QString::fromUtf8(type.name.data(), static_cast<qsizetype>(type.name.size())));
  type_->setWidth(Look::px(150) + 2 * ringRoom);
  connect(type_, &MenuPicker::chosen, this, [this](qint64 type) {
    store_.setFxType(kitSlot_, unit_, type);
    refresh();
  });
  auto* header = new QWidget;
  auto* row = new QHBoxLayout(header);
  leaveRingRoom(*row);
  row->setSpacing(0);
  row->addWidget(switch_);
  row->addSpacing(Look::px(10));
  row->addWidget(badge_);
  row->addSpacing(Look::px(16));
  row->addWidget(type_);
  row->addStretch();
  return header;
}

void FXUnitView::setKit(Slot slot) {
  // A drag under way belongs to the former kit and ends with its slider.
  if (slot != kitSlot_) showRows(nullptr);
  kitSlot_ = slot;
  refresh();
}

void FXUnitView::refresh() {
  const Kit* kit = store_.kit(kitSlot_);
  const bool isOn = kit && kit->isFxOn(unit_);
  const FXTypeDef& type = fxTypeDef(kit, unit_);
  {
    const QSignalBlocker blocker(switch_);
    switch_->setChecked(isOn);
  }
  badge_->setOn(isOn);
  type_->setValue(kit ? kit->fxType(unit_) : 0);
  type_->setEnabled(isOn);
  showRows(isOn && !type.params.empty() ? &type : nullptr);
  for (int position = 0; FXParamRow * row : rows_)
    row->setValue(kit->fxParam(unit_, position++));
  alignRows();
}

void FXUnitView::showRows(const FXTypeDef* type) {
  if (type == shownType_) return;
  shownType_ = type;
  rows_.clear();
  if (params_) {
    params_->hide();
    params_->deleteLater();  // one of its controls may be the one that called
    params_ = nullptr;
  }
  if (!type) return;
  params_ = new QWidget(this);
  params_->setObjectName(named("Params"));
  auto* list = new QVBoxLayout(params_);
  list->setContentsMargins(Look::px(4), 0, 0, 0);
  list->setSpacing(Look::px(8) - 2 * ringRoom);
  QWidget* before = type_;
  for (int position = 0; const FXParamDef& param : type->params) {
    auto* row = new FXParamRow(named("Param") + QString::number(position), param, [this, position](std::int64_t value) {
      store_.setFxParam(kitSlot_, unit_, position, value);
      refresh();
    });
    list->addWidget(row);
    rows_.push_back(row);
    ++position;
  }
  column_->addWidget(params_);
  // New controls stand last in the window's order of the Tab key until they are told otherwise.
  for (const FXParamRow* row : rows_) {
    setTabOrder(before, row->control());
    before = row->control();
  }
  params_->show();
}

void FXUnitView::alignRows() {
  int rangeWidth = 0;
  int rawWidth = 0;
  for (const FXParamRow* row : rows_) {
    int& width = row->hasCaption() ? rawWidth : rangeWidth;
    width = std::max(width, row->valueWidth());
  }
  const auto box = [&](const FXParamRow* row) { return row->hasCaption() ? rawWidth : rangeWidth; };
  int trailing = 0;
  for (const FXParamRow* row : rows_)
    trailing = std::max(trailing, row->trailingWidth(box(row)));
  for (FXParamRow* row : rows_)
    row->setTrailing(box(row), trailing);
}

}  // namespace tamboro
