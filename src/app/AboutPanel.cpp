#include "app/AboutPanel.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "views/controls/Labels.h"
#include "views/controls/Surface.h"
#include "views/look/LookStyle.h"

namespace tamboro {

AboutTexts aboutTexts(const QString& shortVersion, const QString& buildVersion) {
  const QString version = shortVersion.isEmpty() ? QStringLiteral("1.0") : shortVersion;
  const QString build = buildVersion.isEmpty() ? QStringLiteral("1") : buildVersion;
  return {QStringLiteral("Tamboro"), QStringLiteral("Version %1 (%2)").arg(version, build),
          QStringLiteral("© 2026 The Tamboro developers\nFor Roland SPD-SX drum pads")};
}

AboutPanel::AboutPanel(const AboutTexts& texts, QWidget* parent)
    : Sheet(QStringLiteral("aboutPanel"), QStringLiteral("About Tamboro"), parent) {
  column()->setSpacing(12);
  column()->addWidget(new SymbolView(QStringLiteral("square.grid.3x3.fill"), 48, textRole::accent), 0,
                      Qt::AlignHCenter);
  column()->addWidget(makeLabel(QStringLiteral("aboutName"), texts.name, TextStyle::title), 0, Qt::AlignHCenter);
  column()->addWidget(makeLabel(QStringLiteral("aboutVersion"), texts.version, TextStyle::caption, textRole::secondary),
                      0, Qt::AlignHCenter);
  auto* credits = makeLabel(QStringLiteral("aboutCredits"), texts.credits, TextStyle::body);
  credits->setAlignment(Qt::AlignHCenter);
  credits->setMinimumWidth(Look::px(260));
  column()->addWidget(credits, 0, Qt::AlignHCenter);
  QPushButton* close = addButton(QStringLiteral("OK"));
  setControlLook(*close, ControlLook::prominent);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace tamboro
