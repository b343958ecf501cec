#include "views/controls/FormGroup.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "views/controls/Labels.h"
#include "views/look/LookPaint.h"

namespace tamboro {

namespace {
constexpr int sidePadding = 14;
constexpr double boxRadius = 10;
}  // namespace

class FormGroup::Box : public QWidget {
 public:
  explicit Box(QWidget* parent) : QWidget(parent) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    const Look& look = Look::current();
    QPainter painter(this);
    paintBox(painter, rect(), boxRadius, look.controlBackground, look.separator);
    const double line = std::max(1.0, std::floor(devicePixelRatioF())) / devicePixelRatioF();
    const auto rows = findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    const int padding = Look::px(sidePadding);
    const int first = contentsRect().top() + 1;
    for (const QWidget* row : rows) {
      if (!row->isVisible() || row->y() <= first) continue;
      painter.fillRect(QRectF(padding, row->y(), width() - 2 * padding, line), look.separator);
    }
  }
};

FormGroup::FormGroup(const QString& objectName, const QString& title, QWidget* parent)
    : QWidget(parent), box_(new Box(this)), rows_(new QVBoxLayout(box_)) {
  setObjectName(objectName);
  setAccessibleName(title);
  rows_->setSpacing(0);
  auto* headline = makeLabel(objectName + QStringLiteral("Title"), title, TextStyle::headline);
  headline->setIndent(2);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(6);
  column->addWidget(headline);
  column->addWidget(box_);
}

QWidget* FormGroup::addRow(QWidget* content, Qt::Alignment alignment) {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(Look::px(sidePadding), Look::px(10), Look::px(sidePadding), Look::px(10));
  line->addWidget(content, 0, alignment);
  rows_->addWidget(row);
  return row;
}

QWidget* FormGroup::addTitledRow(const QString& title, QWidget* control) {
  auto* label = makeLabel(control->objectName() + QStringLiteral("Title"), title, TextStyle::body);
  label->setBuddy(control);
  QWidget* row = addRow(label);
  auto* line = static_cast<QHBoxLayout*>(row->layout());
  line->addStretch();
  line->addWidget(control);
  return row;
}

}  // namespace tamboro
