#include "app/CheckingSheet.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "views/controls/BusyIndicator.h"
#include "views/controls/Labels.h"

namespace tamboro {

CheckingSheet::CheckingSheet(QWidget* parent)
    : Sheet(QStringLiteral("checkingSheet"), QStringLiteral("Checking for Updates…"), parent) {
  auto* row = new QHBoxLayout;
  row->addWidget(new BusyIndicator);
  row->addWidget(makeLabel(QStringLiteral("checkingTitle"), windowTitle(), TextStyle::headline), 1);
  column()->addLayout(row);
  QPushButton* cancel = addButton(QStringLiteral("Cancel"));
  cancel->setFocus();
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  setFixedWidth(Look::px(360));
}

}  // namespace tamboro
