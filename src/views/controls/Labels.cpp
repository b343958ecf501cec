#include "views/controls/Labels.h"

#include <algorithm>

namespace tamboro {

QLabel* makeLabel(const QString& objectName, const QString& text, TextStyle style, QPalette::ColorRole role,
                  QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setObjectName(objectName);
  label->setTextFormat(Qt::PlainText);
  label->setFont(Look::font(style));
  label->setForegroundRole(role);
  return label;
}

void setWrappedText(QLabel& label, const QString& text, int width) {
  label.setWordWrap(true);
  label.setText(text);
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
