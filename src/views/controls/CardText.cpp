#include "views/controls/CardText.h"

#include <algorithm>

namespace tamboro {

namespace {

constexpr QChar isolateStart(0x2068);
constexpr QChar isolateEnd(0x2069);

bool isCommand(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

bool turnsWords(char32_t letter) {
  switch (QChar::direction(letter)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
      return true;
    default:
      return false;
  }
}

}  // namespace

QString cardText(std::string_view utf8) {
  QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  if (utf8.starts_with("\xEF\xBB\xBF")) text.prepend(QChar(QChar::ByteOrderMark));
  return text;
}

QString visibleText(QString text) {
  if (std::any_of(text.cbegin(), text.cend(), isCommand))
    std::replace_if(text.begin(), text.end(), isCommand, QLatin1Char(' '));
  return text;
}

QString quotedText(const QString& text) {
  const QString shown = visibleText(text);
  const QList<uint> letters = shown.toUcs4();
  return std::any_of(letters.cbegin(), letters.cend(), turnsWords) ? isolateStart + shown + isolateEnd : shown;
}

}  // namespace tamboro
