#include "views/controls/MenuPicker.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <cmath>

namespace tamboro {

MenuPicker::MenuPicker(const QString& objectName, const QString& accessibleName, QWidget* parent) : QComboBox(parent) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  // On some desktops a picker without a label beside it goes by the name of its chosen row.
  setAccessibleDescription(accessibleName);
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
  setMaxVisibleItems(30);
  connect(this, &QComboBox::activated, this, [this](int row) { Q_EMIT chosen(itemData(row).toLongLong()); });
}

void MenuPicker::addRow(std::int64_t value, const QString& text) {
  const QSignalBlocker blocker(this);
  addItem(text, static_cast<qint64>(value));
}

void MenuPicker::addNumbers(std::int64_t lower, std::int64_t upper, const QString& prefix) {
  for (std::int64_t value = lower; value <= upper; ++value)
    addRow(value, prefix + QString::number(value));
}

void MenuPicker::setValue(std::int64_t value) {
  const QSignalBlocker blocker(this);
  value_ = static_cast<double>(value);
  setCurrentIndex(findData(static_cast<qint64>(value)));
}

void MenuPicker::setValueBetween(double value) {
  const QSignalBlocker blocker(this);
  value_ = value;
  setCurrentIndex(-1);
}

/// The row whose value is the next one above (1) or below (-1) the value that has no row; 0: the nearest of both.
int MenuPicker::rowBeside(int way) const {
  int found = -1;
  double least = 0;
  for (int row = 0; row < count(); ++row) {
    const double distance = static_cast<double>(itemData(row).toLongLong()) - value_;
    if (distance * way < 0 || (found >= 0 && std::abs(distance) >= least)) continue;
    found = row;
    least = std::abs(distance);
  }
  return found;
}

void MenuPicker::showPopup() {
  QComboBox::showPopup();
  // Else the arrow keys would begin at the first row.
  if (currentIndex() < 0) view()->setCurrentIndex(model()->index(rowBeside(0), modelColumn(), rootModelIndex()));
}

void MenuPicker::keyPressEvent(QKeyEvent* event) {
  const int way = event->key() == Qt::Key_Down ? 1 : event->key() == Qt::Key_Up ? -1 : 0;
  const bool isStep = way != 0 && currentIndex() < 0 && !(event->modifiers() & ~Qt::KeypadModifier);
  if (!isStep) return QComboBox::keyPressEvent(event);
  if (const int row = rowBeside(way); row >= 0) {
    setCurrentIndex(row);
    Q_EMIT activated(row);
  }
}

void MenuPicker::setWidth(int width) {
  width_ = width;
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  updateGeometry();
}

QSize MenuPicker::sizeHint() const {
  const QSize fitting = QComboBox::sizeHint();
  return QSize(std::max(width_, fitting.width()), fitting.height());
}

QSize MenuPicker::minimumSizeHint() const {
  const QSize fitting = QComboBox::minimumSizeHint();
  return width_ > 0 ? QSize(std::min(width_ / 2, fitting.width()), fitting.height()) : fitting;
}

}  // namespace tamboro
