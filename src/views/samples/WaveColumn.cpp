#include "views/samples/WaveColumn.h"

namespace tamboro {

QVariant WaveCell::value(const WaveColumn& column, int role) const {
  const bool isShown = column.isShown(wave);
  const auto shown = [&](const WaveText& text) { return isShown ? text.of(*this) : QString(); };
  switch (role) {
    case Qt::DisplayRole:
      return column.text.isGiven() ? column.text.of(*this) : QVariant();
    case Qt::ToolTipRole:
      return shown(column.help);
    case Qt::AccessibleTextRole:
      if (!isShown) return column.spokenEmpty.of(*this);
      return (column.spoken.isGiven() ? column.spoken : column.help).of(*this);
    case Qt::AccessibleDescriptionRole:
      // Where the help isn't the cell's name already.
      return column.spoken.isGiven() ? shown(column.help) : QString();
    case Qt::CheckStateRole:
      if (!column.isChecked || !isShown) return {};
      return static_cast<int>(column.isChecked(*this) ? Qt::Checked : Qt::Unchecked);
    case rowRole::isControl:
      return isShown && column.press;
    case rowRole::isEmpty:
      return !isShown;
    case rowRole::accessible:
      return static_cast<int>(isShown ? column.role : QAccessible::StaticText);
    case waveRole::symbol:
      return shown(column.symbol);
    case waveRole::tint:
      return static_cast<int>(column.tint(*this));
    default:
      return {};
  }
}

}  // namespace tamboro
