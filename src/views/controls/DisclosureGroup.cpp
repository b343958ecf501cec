#include "views/controls/DisclosureGroup.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "views/controls/TitledRow.h"
#include "views/look/LookPaint.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {
constexpr int chevronSide = 12;
constexpr int chevronGap = 6;
}  // namespace

DisclosureButton::DisclosureButton(const QString& title, TextStyle style, QWidget* parent) : QPushButton(parent) {
  setText(title);
  setAccessibleName(title);
  setFont(Look::font(style));
  setCheckable(true);
  setFlat(true);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize DisclosureButton::sizeHint() const {
  const QFontMetrics metrics(font());
  return QSize(Look::px(chevronSide) + Look::px(chevronGap) + metrics.horizontalAdvance(text()) + 1 + 2 * ringRoom,
               std::max(metrics.height(), Look::px(chevronSide)) + 2 * ringRoom);
}

void DisclosureButton::keyPressEvent(QKeyEvent* event) {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const int opening = isMirrored ? Qt::Key_Left : Qt::Key_Right;
  const int closing = isMirrored ? Qt::Key_Right : Qt::Key_Left;
  if (event->key() == opening || event->key() == closing) {
    setChecked(event->key() == opening);
    return;
  }
  QPushButton::keyPressEvent(event);
}

void DisclosureButton::paintEvent(QPaintEvent*) {
  const QRect inside = rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
  const int side = Look::px(chevronSide);
  const QRect chevron(inside.x(), inside.y() + (inside.height() - side) / 2, side, side);
  const QString closed =
      layoutDirection() == Qt::RightToLeft ? QStringLiteral("chevron.left") : QStringLiteral("chevron.right");
  QPainter painter(this);
  paintSymbol(painter, isChecked() ? QStringLiteral("chevron.down") : closed,
              QStyle::visualRect(layoutDirection(), inside, chevron),
              palette().color(underMouse() ? textRole::primary : textRole::secondary));
  painter.setPen(palette().color(textRole::primary));
  const QRect words = inside.adjusted(side + Look::px(chevronGap), 0, 0, 0);
  paintText(painter, layoutDirection(), QStyle::visualRect(layoutDirection(), inside, words),
            Qt::AlignLeft | Qt::AlignVCenter, text());
  if (hasFocus()) paintBox(painter, rect(), controlRadius, {}, Look::current().focusRing, 2);
}

DisclosureGroup::DisclosureGroup(const QString& objectName, const QString& title, TextStyle style, QWidget* content,
                                 int gap, QWidget* parent)
    : QWidget(parent), title_(new DisclosureButton(title, style)) {
  setObjectName(objectName);
  title_->setObjectName(objectName + QStringLiteral("Title"));
  auto* rows = new QVBoxLayout(this);
  rows->setSpacing(0);
  auto* head = new QHBoxLayout;
  leaveRingRoom(*head);
  head->addWidget(title_);
  head->addStretch();
  rows->addLayout(head);
  auto* place = new QWidget;
  auto* column = new QVBoxLayout(place);
  column->setContentsMargins(0, std::max(0, gap - 2 * ringRoom), 0, 0);
  column->addWidget(content);
  place->hide();
  rows->addWidget(place);
  connect(title_, &QPushButton::toggled, place, &QWidget::setVisible);
}

}  // namespace tamboro
