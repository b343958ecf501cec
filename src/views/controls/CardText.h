#pragma once

#include <QString>
#include <string_view>

namespace tamboro {

/// A text of the card as it is, for a field: the toolkit's own way drops a U+FEFF at its start.
QString cardText(std::string_view utf8);

/// A text of the card to look at: tabs, line feeds and whatever else is no letter but a command are blanks.
QString visibleText(QString text);

/// The same within a sentence of ours: where it runs from right to left it doesn't turn our words around.
QString quotedText(const QString& text);

}  // namespace tamboro
