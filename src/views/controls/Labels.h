#pragma once

#include <QLabel>

#include "views/look/Look.h"

namespace tamboro {

/// A line of plain text in one of the styles, named so that tests and assistive tools find it.
QLabel* makeLabel(const QString& objectName, const QString& text, TextStyle style,
                  QPalette::ColorRole role = textRole::primary, QWidget* parent = nullptr);

/// Sets a text that wraps at this width, within words that are wider too, and takes the height it needs there; a layout
/// alone would guess it.
void setWrappedText(QLabel& label, const QString& text, int width);

/// What a screen reader says for a help text: the keys of other keyboards instead of ⌘ and ⇧ (on macOS unchanged).
QString spokenKeys(const QString& helpText);

/// A help text as tooltip and, with spoken keys, as accessible description.
void setHelp(QWidget& control, const QString& helpText);

}  // namespace tamboro
