#include "views/controls/AlertSheet.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "views/controls/CardText.h"
#include "views/controls/Labels.h"
#include "views/look/LookStyle.h"

namespace tamboro {

namespace {

/// A path without a break makes the sheet wider before it is broken.
int longestWord(const QString& text, const QFontMetrics& metrics) {
  int longest = 0;
  for (const QString& word : text.split(QLatin1Char(' ')))
    longest = std::max(longest, metrics.horizontalAdvance(word));
  return longest;
}

/// A card can hold a text of millions of characters. What nobody reads to its end is shown without its middle: to break
/// it into lines would take minutes.
QString readable(const QString& text) {
  constexpr qsizetype most = 20'000;
  constexpr qsizetype end = 200;
  return text.size() <= most ? text : text.first(most - end) + QStringLiteral(" … ") + text.last(end);
}

/// Errors can hold an element's name with anything in it; lines are the alert's own.
QString shownLines(const QString& text) {
  QStringList lines = text.split(QLatin1Char('\n'));
  for (QString& line : lines)
    line = visibleText(line);
  return lines.join(QLatin1Char('\n'));
}

/// A sound can be used on a thousand pads: the buttons stay on the screen.
QScrollArea* scroller(QLabel* label, int height) {
  auto* area = new QScrollArea;
  area->setObjectName(label->objectName() + QStringLiteral("Area"));
  area->setAccessibleName(QStringLiteral("Message"));
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(label);
  const int bar = area->verticalScrollBar()->sizeHint().width();
  area->setFixedSize(label->width() + bar + 4, height);
  return area;
}

}  // namespace

AlertSheet::AlertSheet(const Alert& alert, QWidget* parent)
    : Sheet(QStringLiteral("alert"), readable(alert.title), parent) {
  column()->setSpacing(8);
  addText(QStringLiteral("alertTitle"), readable(alert.title), true);
  addText(QStringLiteral("alertText"), readable(alert.text), false);
  column()->addSpacing(12);
  addButtons(alert);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertSheet::addText(const QString& objectName, const QString& text, bool isHeadline) {
  if (text.isEmpty()) return;
  QLabel* label = makeLabel(objectName, {}, isHeadline ? TextStyle::headline : TextStyle::body,
                            isHeadline ? textRole::primary : textRole::secondary);
  const QString shown = shownLines(text);
  setWrappedText(*label, shown,
                 std::clamp(longestWord(shown, QFontMetrics(label->font())) + 4, Look::px(320), Look::px(520)));
  const int room = Look::px(320);
  column()->addWidget(label->height() > room ? scroller(label, room) : static_cast<QWidget*>(label));
}

void AlertSheet::addButtons(const Alert& alert) {
  const bool hasChoice = alert.buttons.size() > 1;
  int position = 0;
  for (const AlertButton& wanted : alert.buttons) {
    QPushButton* button = addButton(wanted.title);
    const bool isCancel = wanted.role == AlertButton::Role::cancel;
    if (isCancel) cancelPosition_ = position;
    if (wanted.role == AlertButton::Role::destructive) setControlLook(*button, ControlLook::destructive);
    if (wanted.role == AlertButton::Role::prominent || !hasChoice) {
      setControlLook(*button, ControlLook::prominent);
      button->setDefault(true);
    }
    if (isCancel || !hasChoice) button->setFocus();
    connect(button, &QPushButton::clicked, this, [this, position] { done(position); });
    ++position;
  }
}

}  // namespace tamboro
