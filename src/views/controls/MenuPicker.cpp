#include "views/controls/MenuPicker.h"

#include <QSignalBlocker>

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
  setCurrentIndex(findData(static_cast<qint64>(value)));
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
