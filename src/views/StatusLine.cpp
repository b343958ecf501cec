#include "views/StatusLine.h"

#include <QHBoxLayout>

#include "library/RolandLibrary.h"
#include "views/controls/Labels.h"
#include "views/controls/QueuedRefresh.h"
#include "views/controls/UnsavedMark.h"

namespace tamboro {

QString countText(std::size_t count, const QString& noun) {
  return QString::number(count) + QLatin1Char(' ') + noun + (count == 1 ? QString() : QStringLiteral("s"));
}

StatusLine::StatusLine(RolandLibrary& store, QWidget* parent)
    : Surface(&Look::controlBackground, Qt::TopEdge, parent), store_(store) {
  setObjectName(QStringLiteral("statusLine"));
  setAccessibleName(QStringLiteral("Status"));
  kits_ = makeLabel(QStringLiteral("kitCount"), {}, TextStyle::caption, textRole::secondary);
  samples_ = makeLabel(QStringLiteral("sampleCount"), {}, TextStyle::caption, textRole::secondary);
  unsaved_ = new UnsavedMark;
  unsaved_->setObjectName(QStringLiteral("unsavedMark"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(12, 0, 12, 0);
  row->setSpacing(16);
  row->addWidget(kits_);
  row->addWidget(
      makeLabel(QStringLiteral("statusBullet"), QStringLiteral("•"), TextStyle::caption, textRole::tertiary));
  row->addWidget(samples_);
  row->addWidget(unsaved_);
  row->addStretch();
  // 8 above and below a caption; the mark's capsule is higher than that and must not move the line.
  setFixedHeight(std::max(Look::px(30), QFontMetrics(kits_->font()).height() + 16));
  new QueuedRefresh(
      store, [this] { refresh(); }, this);
  refresh();
}

void StatusLine::refresh() {
  kits_->setText(countText(store_.kits().size(), QStringLiteral("kit")));
  samples_->setText(countText(store_.waves().size(), QStringLiteral("sample")));
  unsaved_->setVisible(store_.hasUnsavedChanges());
}

}  // namespace tamboro
