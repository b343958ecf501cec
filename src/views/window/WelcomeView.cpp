#include "views/window/WelcomeView.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "library/store/RolandLibrary.h"
#include "views/controls/CardText.h"
#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/Surface.h"
#include "views/look/LookPaint.h"
#include "views/look/LookStyle.h"

namespace tamboro {

namespace {

QLabel* makeParagraph(const QString& objectName, const QString& text, QPalette::ColorRole role) {
  QLabel* label = makeLabel(objectName, text, TextStyle::body, role);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  setWrappedText(*label, text, Look::px(360));
  return label;
}

}  // namespace

WelcomeView::WelcomeView(RolandLibrary& store, QWidget* parent)
    : Surface(&Look::window, Qt::TopEdge, parent), store_(store) {
  setObjectName(QStringLiteral("welcomeView"));
  setAccessibleName(QStringLiteral("Welcome"));
  auto* name = makeLabel(QStringLiteral("welcomeTitle"), QStringLiteral("Tamboro"), TextStyle::title);
  auto* text = makeParagraph(QStringLiteral("welcomeText"),
                             QStringLiteral("Select your SPD-SX volume (or the Roland/SPD-SX folder) to get started."),
                             textRole::secondary);
  error_ = makeParagraph(QStringLiteral("welcomeError"), {}, textRole::danger);
  auto* choose = new QPushButton(QStringLiteral("Choose SPD-SX Folder…"));
  choose->setObjectName(QStringLiteral("chooseFolderButton"));
  setControlLook(*choose, ControlLook::prominent);
  choose->setMinimumHeight(Look::px(32) + 2 * ringRoom);
  choose->setMinimumWidth(Look::px(192) + 2 * ringRoom);
  connect(choose, &QPushButton::clicked, this, [this] { store_.chooseRoot(); });

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(16, 16, 16, 16);
  column->setSpacing(16);
  column->addStretch();
  column->addWidget(new SymbolView(QStringLiteral("square.grid.3x3.fill"), 48, textRole::accent), 0, Qt::AlignHCenter);
  for (QWidget* item : {static_cast<QWidget*>(name), static_cast<QWidget*>(text), static_cast<QWidget*>(error_),
                        static_cast<QWidget*>(choose)})
    column->addWidget(item, 0, Qt::AlignHCenter);
  column->addStretch();
  setFocusProxy(choose);
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

void WelcomeView::refresh() {
  QString text = visibleText(store_.lastError().value_or(QString()));
  if (!store_.lastErrorDetail().isEmpty()) text += QLatin1Char('\n') + visibleText(store_.lastErrorDetail());
  setWrappedText(*error_, text, Look::px(360));
  error_->setVisible(store_.lastError().has_value());
}

}  // namespace tamboro
