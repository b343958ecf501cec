#include "views/controls/EmptyStatePanel.h"

#include <QVBoxLayout>

#include "views/controls/Labels.h"
#include "views/controls/Surface.h"

namespace tamboro {

EmptyStatePanel::EmptyStatePanel(const QString& title, const QString& symbol, QWidget* parent) : QWidget(parent) {
  title_ = makeLabel(QStringLiteral("emptyStateTitle"), {}, TextStyle::title2);
  title_->setAlignment(Qt::AlignCenter);
  title_->setWordWrap(true);
  setTitle(title);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(20, 20, 20, 20);
  column->setSpacing(Look::px(12));
  column->addStretch();
  if (!symbol.isEmpty()) column->addWidget(new SymbolView(symbol, 44, textRole::tertiary), 0, Qt::AlignHCenter);
  column->addWidget(title_);
  column->addStretch();
}

QString EmptyStatePanel::title() const {
  return title_->text();
}

void EmptyStatePanel::setTitle(const QString& title) {
  title_->setText(title);
  setAccessibleName(title);
}

}  // namespace tamboro
