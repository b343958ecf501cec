// Scrolling the sidebar of a card with 1,000 kits, against a plain list of the same delegate whose rows are fixed.

#include <QListView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "library/Measure.h"
#include "views/ViewsBench.h"
#include "views/kits/KitListRules.h"
#include "views/kits/KitListView.h"
#include "views/kits/KitRowDelegate.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 25;
constexpr int steps = 40;
constexpr int distance = 97;  // no whole number of rows
constexpr double limit = 1.5;

/// Outside of the program's own list, which paints the ground and the headers.
class PlainDelegate : public KitRowDelegate {
 public:
  using KitRowDelegate::KitRowDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    paintCell(*painter, option, index);
  }
  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
    return QSize(0, rowHeight(index));
  }
};

void fill(QStandardItemModel& model, const std::vector<Kit>& kits) {
  for (const Kit& kit : kits) {
    auto* item = new QStandardItem;
    item->setData(kitSlotText(kit.slot), kitRole::slot);
    item->setData(kitDisplayName(QString::fromStdString(kit.name())), kitRole::name);
    item->setData(QString::fromStdString(kit.subName()), kitRole::subtitle);
    item->setData(kit.isDirty, kitRole::isDirty);
    model.appendRow(item);
  }
}

/// Scrolls from the top, painting at each step.
void scroll(QAbstractItemView& view) {
  view.verticalScrollBar()->setValue(0);
  for (int step = 1; step <= steps; ++step) {
    view.verticalScrollBar()->setValue(step * distance);
    view.viewport()->repaint();
  }
}

}  // namespace

bool measureKitScrolling(const Path& manyKits, const Path& place) {
  DiskStore store(place / "scrolling");
  store.library.load(manyKits);
  NoPrompts prompts;
  KitListView kits(store.library, prompts);
  kits.resize(204, 700);
  kits.show();
  settle();
  auto& ours = *kits.findChild<QAbstractItemView*>(QStringLiteral("kitList"));

  QStandardItemModel model;
  fill(model, store.library.kits());
  QListView theirs;
  theirs.setFrameShape(QFrame::NoFrame);
  theirs.setUniformItemSizes(true);
  theirs.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  theirs.setModel(&model);
  theirs.setItemDelegate(new PlainDelegate(&theirs));
  theirs.resize(ours.size());
  theirs.show();
  settle();

  const Duration measured = ratio(
      "kit_scrolling x 40", rounds, [&] { scroll(ours); }, [&] { scroll(theirs); });
  if (model.rowCount() != 1000 || ours.verticalScrollBar()->value() != theirs.verticalScrollBar()->value())
    std::abort();
  return report("kit_scrolling", measured.processor, limit);
}

}  // namespace tamboro::bench
