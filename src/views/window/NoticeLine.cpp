#include "views/window/NoticeLine.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>

#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {

constexpr int mostLines = 4;

/// A text that wraps within a few lines, a path without a blank too; what doesn't fit ends in "…" and is the help text.
class WrappedText : public QLabel {
 public:
  WrappedText(const QString& objectName, const QString& text, TextStyle style, QPalette::ColorRole role)
      : QLabel(text) {
    setObjectName(objectName);
    setTextFormat(Qt::PlainText);
    setFont(Look::font(style));
    setForegroundRole(role);
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
  }

  int heightForWidth(int width) const override { return height(layOut(width, nullptr)); }
  QSize sizeHint() const override { return QSize(0, height(1)); }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    layOut(width(), &painter);
  }
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    isCut_ = false;
    layOut(width(), nullptr);
    setToolTip(isCut_ ? text() : QString());
  }

 private:
  int height(int lines) const { return std::max(1, lines) * fontMetrics().lineSpacing(); }

  /// Returns the number of lines; paints them where there is a painter.
  int layOut(int width, QPainter* painter) const {
    int lines = 0;
    for (const QString& paragraph : text().split(QLatin1Char('\n'))) {
      if (lines == mostLines) break;
      lines += layOutParagraph(paragraph, lines, width, painter);
    }
    return lines;
  }

  int layOutParagraph(const QString& paragraph, int above, int width, QPainter* painter) const {
    QTextOption option(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute);
    option.setTextDirection(Qt::LayoutDirectionAuto);  // the text's own, in a mirrored layout too
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(paragraph, font());
    layout.setTextOption(option);
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(width);
      const int y = (above + lines) * fontMetrics().lineSpacing();
      const bool isLast = above + ++lines == mostLines;
      isCut_ |= isLast && line.textStart() + line.textLength() < paragraph.size();
      if (painter && isLast)
        drawRest(*painter, paragraph.mid(line.textStart()), y);
      else if (painter)
        line.draw(painter, QPointF(0, y));
      if (isLast) break;
    }
    layout.endLayout();
    return std::max(1, lines);
  }

  void drawRest(QPainter& painter, const QString& rest, int y) const {
    const QRect place(0, y, width(), fontMetrics().lineSpacing());
    const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignTop);
    painter.drawText(place, static_cast<int>(side | Qt::AlignAbsolute) | Qt::TextSingleLine,
                     fontMetrics().elidedText(rest, Qt::ElideRight, width()));
  }

  mutable bool isCut_ = false;
};

class CloseButton : public QPushButton {
 public:
  CloseButton() {
    setObjectName(QStringLiteral("closeNoticeButton"));
    setAccessibleName(QStringLiteral("Dismiss"));
    setToolTip(QStringLiteral("Dismiss"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(Look::px(22) + 2 * ringRoom, Look::px(22) + 2 * ringRoom);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const double inset = (width() - Look::px(15)) / 2.0;
    paintSymbol(painter, QStringLiteral("xmark.circle.fill"), QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                palette().color(underMouse() || isDown() ? textRole::primary : textRole::secondary));
    if (hasFocus()) paintBox(painter, rect(), controlRadius + ringRoom, {}, Look::current().focusRing, 2);
  }
};

/// A role that screen readers speak by themselves when it comes up.
QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  auto* line = qobject_cast<NoticeLine*>(object);
  if (!line || className != QLatin1String(NoticeLine::staticMetaObject.className())) return nullptr;
  return new QAccessibleWidget(line, QAccessible::Notification);
}

}  // namespace

NoticeLine::NoticeLine(const QString& objectName, const Notice& notice, QWidget* parent)
    : Surface(&Look::controlBackground, Qt::BottomEdge, parent) {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
  setObjectName(objectName);
  setAccessibleName(notice.text);
  setAccessibleDescription(notice.detail);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(12, 8, 8, 8);
  row->addLayout(makeTexts(notice), 1);
  for (std::size_t place = 0; place < notice.actions.size(); ++place) {
    auto* button = new QPushButton(notice.actions[place].title);
    button->setObjectName(QStringLiteral("noticeAction%1").arg(place));
    button->setFocusPolicy(Qt::TabFocus);
    setControlLook(*button, ControlLook::small);
    connect(button, &QPushButton::clicked, this, [this, place] { Q_EMIT chosen(place); });
    buttons_.push_back(button);
  }
  auto* close = new CloseButton;
  connect(close, &QPushButton::clicked, this, &NoticeLine::closed);
  buttons_.push_back(close);
  for (QWidget* button : buttons_)
    row->addWidget(button, 0, Qt::AlignVCenter);
}

QLayout* NoticeLine::makeTexts(const Notice& notice) {
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addStretch();
  texts->addWidget(new WrappedText(QStringLiteral("noticeText"), notice.text, TextStyle::body, textRole::primary));
  if (!notice.detail.isEmpty())
    texts->addWidget(
        new WrappedText(QStringLiteral("noticeDetail"), notice.detail, TextStyle::caption, textRole::secondary));
  texts->addStretch();
  return texts;
}

void NoticeLine::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return Surface::keyPressEvent(event);
  Q_EMIT closed();
}

}  // namespace tamboro
