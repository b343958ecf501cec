#include "views/samples/WaveCell.h"

#include <QAccessible>

namespace tamboro {

QVariant WaveCell::value(int role) const {
  switch (role) {
    case Qt::DisplayRole:
      return text();
    case Qt::ToolTipRole:
      return help();
    case Qt::AccessibleTextRole:
      return spokenText();
    case Qt::AccessibleDescriptionRole:
      // Where the help isn't the cell's name already.
      return column == waveColumn::name || column == waveColumn::loop ? help() : QString();
    case Qt::CheckStateRole:
      if (column != waveColumn::loop || !isShown()) return {};
      return static_cast<int>(isOpen ? Qt::Checked : Qt::Unchecked);
    case rowRole::isControl:
      return isControl();
    case rowRole::isEmpty:
      return !isShown();
    case rowRole::accessible:
      return accessibleRole();
    case waveRole::symbol:
      return symbol();
    case waveRole::tint:
      return static_cast<int>(tint());
    default:
      return {};
  }
}

bool WaveCell::isControl() const {
  switch (column) {
    case waveColumn::play:
    case waveColumn::tag:
    case waveColumn::add:
      return true;
    case waveColumn::remove:
      return !wave.isFactory;
    case waveColumn::loop:
      return wave.hasMeasure;
    default:
      return false;
  }
}

bool WaveCell::isShown() const {
  if (column == waveColumn::pending) return wave.isPending;
  return column == waveColumn::name || column == waveColumn::number || isControl();
}

QVariant WaveCell::text() const {
  switch (column) {
    case waveColumn::name:
      return wave.name();
    case waveColumn::tag:
      return tag;
    case waveColumn::number:
      return waveNumberText(wave.id);
    default:
      return {};
  }
}

QString WaveCell::help() const {
  if (!isShown()) return {};
  switch (column) {
    case waveColumn::name:
      return QStringLiteral("Double-click to rename. Drag to assign to a pad.");
    case waveColumn::pending:
      return QStringLiteral("Not saved to the card yet");
    case waveColumn::add:
      return addHelp;
    case waveColumn::loop:
      return QStringLiteral("Show/hide loop and tempo sync settings");
    default:
      return {};
  }
}

/// Nothing is without a name, not even an empty slot.
QString WaveCell::emptyText() const {
  switch (column) {
    case waveColumn::pending:
      return QStringLiteral("Saved on the card");
    case waveColumn::remove:
      return QStringLiteral("Factory sound");
    default:
      return QStringLiteral("No loop settings");
  }
}

QString WaveCell::spokenText() const {
  if (!isShown()) return emptyText();
  switch (column) {
    case waveColumn::play:
      return isPlaying ? QStringLiteral("Stop") : QStringLiteral("Play");
    case waveColumn::name:
      return waveSpokenText(wave, tag);
    case waveColumn::tag:
      return QStringLiteral("Tag: ") + tag;
    case waveColumn::number:
      return QString::number(wave.id);
    case waveColumn::remove:
      return QStringLiteral("Delete");
    case waveColumn::loop:
      return QStringLiteral("Loop settings");
    default:
      return help();
  }
}

QVariant WaveCell::accessibleRole() const {
  if (column == waveColumn::tag) return static_cast<int>(QAccessible::ButtonMenu);
  if (isControl()) return static_cast<int>(QAccessible::Button);
  if (column == waveColumn::name) return {};
  return static_cast<int>(isShown() && column == waveColumn::pending ? QAccessible::Graphic : QAccessible::StaticText);
}

QString WaveCell::symbol() const {
  if (!isShown()) return {};
  switch (column) {
    case waveColumn::play:
      return isPlaying ? QStringLiteral("stop.fill") : QStringLiteral("play.fill");
    case waveColumn::pending:
      return QStringLiteral("arrow.up.circle");
    case waveColumn::add:
      return QStringLiteral("plus.circle.fill");
    case waveColumn::remove:
      return QStringLiteral("trash");
    case waveColumn::loop:
      return QStringLiteral("waveform");
    default:
      return {};
  }
}

WaveTint WaveCell::tint() const {
  switch (column) {
    case waveColumn::play:
      return isPlaying ? WaveTint::accent : WaveTint::quiet;
    case waveColumn::pending:
      return WaveTint::orange;
    case waveColumn::add:
      return hasKit ? WaveTint::red : WaveTint::faint;
    case waveColumn::loop:
      return isOpen ? WaveTint::accent : WaveTint::quiet;
    default:
      return WaveTint::quiet;
  }
}

}  // namespace tamboro
