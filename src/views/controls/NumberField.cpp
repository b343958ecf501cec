#include "views/controls/NumberField.h"

#include "views/look/Look.h"

namespace tamboro {

NumberField::NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QLineEdit(parent) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setFont(Look::monospaced(TextStyle::caption));
  setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  connect(this, &QLineEdit::editingFinished, this, &NumberField::take);
  showValue();
}

void NumberField::setValue(std::int64_t value) {
  value_ = value;
  if (!isModified()) showValue();
}

void NumberField::take() {
  if (!isModified()) return;
  bool isNumber = false;
  const std::int64_t typed = text().trimmed().toLongLong(&isNumber);
  setModified(false);
  if (isNumber && typed != value_) {
    value_ = typed;
    Q_EMIT edited(typed);
  }
  showValue();
}

void NumberField::showValue() {
  const QString text = QString::number(value_);
  if (text == this->text()) return;
  const int cursor = cursorPosition();
  setText(text);
  setCursorPosition(hasFocus() ? cursor : 0);
}

}  // namespace tamboro
