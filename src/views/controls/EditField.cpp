#include "views/controls/EditField.h"

#include <QInputMethodEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyleOption>

#include "views/controls/CardText.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"

namespace tamboro {

EditField::EditField(const QString& objectName, const QString& placeholder, Text stored, QWidget* parent)
    : QLineEdit(parent), stored_(std::move(stored)) {
  setObjectName(objectName);
  setAccessibleName(placeholder);
  setPlaceholderText(placeholder);
  setControlLook(*this, ControlLook::quiet);
  align();
  // Not textEdited: what assistive tools put in comes without it, and a refresh is blocked.
  connect(this, &QLineEdit::textChanged, this, [this](const QString& typed) {
    stored_.write(typed);
    refresh();
  });
}

void EditField::refresh() {
  const QString now = stored_.read();
  if (isComposing_ || now == text()) return;
  const QSignalBlocker blocker(this);
  const int cursor = cursorPosition();
  const int anchor = selectionStart();
  const int selected = static_cast<int>(selectedText().size());
  setText(now);
  setCursorPosition(cursor);
  // Counted from the end where the cursor stands at the start of what is selected.
  if (anchor >= 0) anchor == cursor ? setSelection(anchor + selected, -selected) : setSelection(anchor, selected);
}

void EditField::setTextColour(QColor Look::*colour) {
  colour_ = colour;
  takeColour();
}

void EditField::takeColour() {
  if (!colour_ || palette().color(QPalette::Active, QPalette::Text) == Look::current().*colour_) return;
  QPalette own;
  own.setColor(QPalette::Active, QPalette::Text, Look::current().*colour_);
  own.setColor(QPalette::Inactive, QPalette::Text, Look::current().*colour_);
  setPalette(own);
}

void EditField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  // A colour of one's own doesn't follow the application from light to dark.
  if (event->type() == QEvent::PaletteChange) takeColour();
  if (event->type() == QEvent::LayoutDirectionChange) align();
}

/// On the column's edge also where the text runs the other way: it is a title as long as nobody types in it.
void EditField::align() {
  setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter));
}

/// The toolkit leaves room up to the next stop for a tab; a title has a blank there.
void EditField::paintEvent(QPaintEvent* event) {
  if (hasFocus() || !text().contains(QLatin1Char('\t'))) return QLineEdit::paintEvent(event);
  QStyleOptionFrame option;
  initStyleOption(&option);
  QPainter painter(this);
  style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
  const QRect room = style()->subElementRect(QStyle::SE_LineEditContents, &option, this).adjusted(2, 0, -2, 0);
  painter.setPen(palette().color(QPalette::Text));
  paintText(painter, Qt::LeftToRight, room, alignment(), visibleText(text()));
}

void EditField::inputMethodEvent(QInputMethodEvent* event) {
  isComposing_ = !event->preeditString().isEmpty();
  QLineEdit::inputMethodEvent(event);
  if (!isComposing_) refresh();
}

}  // namespace tamboro
