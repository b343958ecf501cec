#include "views/controls/Labels.h"

#include <QEvent>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <algorithm>

namespace tamboro {

namespace {

/// Stands at the leading edge of its place. The toolkit's own goes by the direction of the text instead, so that an
/// English caption would part from its control in a mirrored layout.
class LeadingLabel : public QLabel {
 public:
  LeadingLabel(const QString& text, QWidget* parent) : QLabel(text, parent) { align(); }

 protected:
  void changeEvent(QEvent* event) override {
    QLabel::changeEvent(event);
    // Only as long as nobody gave it another alignment.
    if (event->type() == QEvent::LayoutDirectionChange && alignment() & Qt::AlignAbsolute) align();
  }

 private:
  void align() { setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter)); }
};

/// Labels wrap between words only: marks where a word that is wider than the line can go on in the next.
QString withBreaks(const QString& text, const QFontMetrics& metrics, int width) {
  if (metrics.horizontalAdvance(text) <= width) return text;
  QString broken;
  QString line;  // what stands there since the last place to break at
  QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype from = 0; letters.toNextBoundary() > 0; from = letters.position()) {
    const QString letter = text.mid(from, letters.position() - from);
    if (letter.front().isSpace()) {
      line.clear();
    } else if (metrics.horizontalAdvance(line + letter) > width - 2) {
      broken += QChar(0x200B);
      line = letter;
    } else {
      line += letter;
    }
    broken += letter;
  }
  return broken;
}

}  // namespace

QLabel* makeLabel(const QString& objectName, const QString& text, TextStyle style, QPalette::ColorRole role,
                  QWidget* parent) {
  auto* label = new LeadingLabel(text, parent);
  label->setObjectName(objectName);
  label->setTextFormat(Qt::PlainText);
  label->setFont(Look::font(style));
  label->setForegroundRole(role);
  return label;
}

void setWrappedText(QLabel& label, const QString& text, int width) {
  const QString broken = withBreaks(text, label.fontMetrics(), width);
  label.setWordWrap(true);
  label.setText(broken);
  label.setAccessibleName(broken == text ? QString() : text);
  label.setFixedSize(width, std::max(0, label.heightForWidth(width)));
}

QString spokenKeys(const QString& helpText) {
  QString spoken = helpText;
#ifndef Q_OS_MACOS
  spoken.replace(QStringLiteral("⇧⌘"), QStringLiteral("Ctrl+Shift+"));
  spoken.replace(QStringLiteral("⌘"), QStringLiteral("Ctrl+"));
#endif
  return spoken;
}

void setHelp(QWidget& control, const QString& helpText) {
  control.setToolTip(helpText);
  control.setAccessibleDescription(spokenKeys(helpText));
}

}  // namespace tamboro
