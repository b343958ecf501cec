#include "views/controls/NumberField.h"

#include <QApplication>
#include <QKeyEvent>

#include "views/look/Look.h"

namespace tamboro {

NumberField::NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QLineEdit(parent) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setFont(Look::monospaced(TextStyle::caption));
  setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  connect(this, &QLineEdit::editingFinished, this, &NumberField::take);
  connect(this, &QLineEdit::textEdited, this, [this] { qApp->installEventFilter(this); });
  showValue();
}

void NumberField::setValue(std::int64_t value) {
  value_ = value;
  if (!isModified()) showValue();
}

void NumberField::take() {
  qApp->removeEventFilter(this);
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

bool NumberField::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Save)) take();
  return QLineEdit::event(event);
}

/// Many buttons leave the focus where it is.
bool NumberField::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
    const QObject* pressed = watched;
    while (pressed && pressed != this)
      pressed = pressed->parent();  // up from the field's own menu
    if (!pressed) take();
  }
  return QLineEdit::eventFilter(watched, event);
}

}  // namespace tamboro
