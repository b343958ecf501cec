#include "views/controls/NumberField.h"

#include <QApplication>
#include <QKeyEvent>

#include "views/look/Look.h"

namespace tamboro {

namespace {

std::optional<std::int64_t> digitsIn(const QString& text) {
  bool isNumber = false;
  const std::int64_t number = text.trimmed().toLongLong(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

NumberField::NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QLineEdit(parent), notation_{[](std::int64_t value) { return QString::number(value); }, digitsIn} {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setFont(Look::monospaced(TextStyle::caption));
  setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  connect(this, &QLineEdit::editingFinished, this, &NumberField::take);
  connect(this, &QLineEdit::returnPressed, this, &NumberField::take);
  connect(this, &QLineEdit::textEdited, this, [this] {
    isTyped_ = true;
    qApp->installEventFilter(this);
  });
  // Behind textEdited where there is one. What assistive tools put in comes whole, and without it.
  connect(this, &QLineEdit::textChanged, this, [this] {
    if (!std::exchange(isTyped_, false)) take();
  });
  showValue();
}

void NumberField::setNotation(Notation notation) {
  notation_ = std::move(notation);
  showValue();
}

void NumberField::setValue(std::int64_t value) {
  value_ = value;
  if (!isEditing()) showValue();
}

void NumberField::take() {
  qApp->removeEventFilter(this);
  if (!isEditing()) return;
  const auto typed = notation_.read(text());
  shown_ = text();
  if (typed && *typed != value_) {
    value_ = *typed;
    Q_EMIT edited(*typed);
  }
  showValue();
}

void NumberField::showValue() {
  shown_ = notation_.write(value_);
  if (shown_ == text()) return;
  const int cursor = cursorPosition();
  setText(shown_);
  setCursorPosition(hasFocus() ? cursor : 0);
}

bool NumberField::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Save)) take();
  return QLineEdit::event(event);
}

void NumberField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  isFirstClick_ = event->reason() == Qt::MouseFocusReason;
}

void NumberField::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  if (std::exchange(isFirstClick_, false) && !hasSelectedText()) selectAll();
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
