#include "views/controls/TitledRow.h"

#include <QHBoxLayout>
#include <algorithm>

#include "views/controls/Labels.h"
#include "views/look/LookPaint.h"

namespace tamboro {

void leaveRingRoom(QLayout& layout) {
  layout.setContentsMargins(ringRoom, ringRoom, ringRoom, ringRoom);
}

QBoxLayout* layOutTitledRow(QWidget& row, const QString& title, QWidget* control, int titleWidth) {
  auto* label =
      makeLabel(control->objectName() + QStringLiteral("Title"), title, TextStyle::caption, textRole::secondary);
  label->setFixedWidth(std::max(titleWidth, label->sizeHint().width()));
  label->setBuddy(control);
  auto* line = new QHBoxLayout(&row);
  leaveRingRoom(*line);
  line->setSpacing(0);
  line->addWidget(label);
  line->addSpacerItem(new QSpacerItem(Look::px(20), 0, QSizePolicy::Maximum));
  line->addWidget(control);
  line->addStretch();
  return line;
}

QWidget* makeTitledRow(const QString& title, QWidget* control, int titleWidth) {
  auto* row = new QWidget;
  layOutTitledRow(*row, title, control, titleWidth);
  return row;
}

}  // namespace tamboro
