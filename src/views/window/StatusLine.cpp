#include "views/window/StatusLine.h"

#include <QHBoxLayout>
#include <QTimer>
#include <algorithm>

#include "library/store/RolandLibrary.h"
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
  progress_ = makeLabel(QStringLiteral("saveProgress"), {}, TextStyle::caption, textRole::secondary);
  progress_->hide();
  progressTimer_ = new QTimer(this);
  progressTimer_->setInterval(500);  // most saves have ended by then and show nothing
  connect(progressTimer_, &QTimer::timeout, this, &StatusLine::showProgress);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(12, 0, 12, 0);
  row->setSpacing(16);
  row->addWidget(kits_);
  row->addWidget(
      makeLabel(QStringLiteral("statusBullet"), QStringLiteral("•"), TextStyle::caption, textRole::tertiary));
  row->addWidget(samples_);
  row->addWidget(unsaved_);
  row->addStretch();
  row->addWidget(progress_);
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
  if (store_.isExporting() == progressTimer_->isActive()) return;
  store_.isExporting() ? progressTimer_->start() : progressTimer_->stop();
  progress_->hide();
}

void StatusLine::showProgress() {
  const SaveProgress* save = store_.saveProgress();
  if (save == nullptr || save->total == 0) return;
  progress_->setText(
      QStringLiteral("Saving file %1 of %2").arg(std::min(save->done + 1, save->total.load())).arg(save->total));
  progress_->show();
}

}  // namespace tamboro
