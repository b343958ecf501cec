#include "views/controls/RawEnumPicker.h"

#include <QSignalBlocker>

#include "views/controls/MenuPicker.h"
#include "views/controls/TitledRow.h"

namespace tamboro {

RawEnumPicker::RawEnumPicker(const QString& objectName, const QString& title, const Options& options, int titleWidth,
                             QWidget* parent)
    : QWidget(parent),
      menu_(new MenuPicker(objectName + QStringLiteral("Menu"), title)),
      optionCount_(static_cast<int>(options.size())) {
  setObjectName(objectName);
  for (const auto& [value, text] : options)
    menu_->addRow(value, text);
  layOutTitledRow(*this, title, menu_, titleWidth);
  connect(menu_, &MenuPicker::chosen, this, &RawEnumPicker::chosen);
}

void RawEnumPicker::setValue(std::int64_t value) {
  const int row = menu_->findData(static_cast<qint64>(value));
  if (row < 0 || row < optionCount_) {
    const QSignalBlocker blocker(menu_);
    while (menu_->count() > optionCount_)
      menu_->removeItem(optionCount_);
  }
  if (row < 0) menu_->addRow(value, QStringLiteral("(%1)").arg(value));
  menu_->setValue(value);
}

}  // namespace tamboro
