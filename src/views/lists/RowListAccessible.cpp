#include "views/lists/RowListAccessible.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHash>

#include "views/lists/RowList.h"

namespace tamboro {

namespace {

const RowModel& rowsOf(const RowList& list) {
  return list.rows();
}

class CellAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  CellAccessible(RowList& list, const QModelIndex& index) : list_(&list), index_(index) {}

  bool isValid() const override { return list_ && index_.isValid(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return parent() ? parent()->window() : nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_.data()); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  int place() const { return index_.row() * rowsOf(*list_).columnCount() + index_.column(); }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Description) return index_.data(Qt::AccessibleDescriptionRole).toString();
    if (kind != QAccessible::Name) return {};
    const QString spoken = index_.data(Qt::AccessibleTextRole).toString();
    return spoken.isEmpty() ? index_.data(Qt::DisplayRole).toString() : spoken;
  }

  QRect rect() const override {
    if (!isValid()) return {};
    const QRect cell = list_->visualRect(index_);
    return cell.isEmpty() ? QRect() : QRect(list_->viewport()->mapToGlobal(cell.topLeft()), cell.size());
  }

  QAccessible::Role role() const override {
    if (!isValid()) return QAccessible::NoRole;
    if (isHeader()) return QAccessible::Heading;
    const QVariant own = index_.data(rowRole::accessible);
    return own.isValid() ? static_cast<QAccessible::Role>(own.toInt()) : QAccessible::ListItem;
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid || !list_->isVisible()) {
      state.invisible = true;
      return state;
    }
    state.invisible = index_.data(rowRole::isEmpty).toBool();
    state.offscreen = !list_->viewport()->rect().intersects(list_->visualRect(index_));
    if (isHeader()) return state;
    const Qt::ItemFlags flags = index_.flags();
    state.disabled = !flags.testFlag(Qt::ItemIsEnabled);
    state.selectable = flags.testFlag(Qt::ItemIsSelectable);
    state.selected = list_->isRowSelected(index_.row()) || index_.data(rowRole::isEcho).toBool();
    state.focusable = state.selectable;
    state.focused = list_->hasFocus() && list_->currentIndex() == index_;
    const QVariant check = index_.data(Qt::CheckStateRole);
    state.checkable = check.isValid();
    state.checked = check.toInt() == Qt::Checked;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface && isValid() && !isHeader()
               ? static_cast<QAccessibleActionInterface*>(this)
               : nullptr;
  }
  QStringList actionNames() const override { return {pressAction(), showMenuAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (!isValid()) return;
    const QModelIndex index = index_;
    if (name == pressAction()) list_->press(index);
    if (name == showMenuAction()) list_->showMenu(index, rect().center());
    if (name == setFocusAction()) {
      list_->setFocus();
      list_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  bool isHeader() const { return rowsOf(*list_).key(index_)->kind == RowKey::Kind::header; }

  QPointer<RowList> list_;
  QPersistentModelIndex index_;
};

class ListAccessible : public QAccessibleWidget {
 public:
  explicit ListAccessible(RowList& list) : QAccessibleWidget(&list, QAccessible::List), list_(list) {
    QObject::connect(list.model(), &QAbstractItemModel::modelReset, &context_, [this] { forget(); });
  }
  ~ListAccessible() override { forget(); }

  int childCount() const override { return cellCount() + static_cast<int>(widgets().size()); }
  QAccessibleInterface* child(int place) const override {
    if (place >= cellCount()) return QAccessible::queryAccessibleInterface(widgets().value(place - cellCount()));
    if (place < 0) return nullptr;
    QAccessible::Id& id = cells_[place];
    if (!id) {
      const int columns = rowsOf(list_).columnCount();
      id = QAccessible::registerAccessibleInterface(
          new CellAccessible(list_, rowsOf(list_).index(place / columns, place % columns)));
    }
    return QAccessible::accessibleInterface(id);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    if (!child || !child->isValid()) return -1;
    if (const auto* cell = dynamic_cast<const CellAccessible*>(child)) return cell->place();
    const auto place = widgets().indexOf(qobject_cast<QWidget*>(child->object()));
    return place < 0 ? -1 : cellCount() + static_cast<int>(place);
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (QWidget* widget : widgets())
      if (widget->rect().contains(widget->mapFromGlobal(QPoint(x, y))))
        return QAccessible::queryAccessibleInterface(widget);
    return cell(list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y))));
  }
  QAccessibleInterface* focusChild() const override {
    for (QWidget* widget : widgets())
      if (widget->hasFocus() || widget->isAncestorOf(QApplication::focusWidget()))
        return QAccessible::queryAccessibleInterface(widget);
    return list_.hasFocus() ? cell(list_.currentIndex()) : nullptr;
  }

 private:
  /// The fields and details over the rows.
  QWidgetList widgets() const {
    QWidgetList found = list_.details();
    for (QLineEdit* field : list_.fields())
      found << field;
    return found;
  }
  int cellCount() const { return rowsOf(list_).rowCount() * rowsOf(list_).columnCount(); }
  QAccessibleInterface* cell(const QModelIndex& index) const {
    return index.isValid() ? child(index.row() * rowsOf(list_).columnCount() + index.column()) : nullptr;
  }
  void forget() {
    for (const QAccessible::Id id : cells_)
      QAccessible::deleteAccessibleInterface(id);
    cells_.clear();
  }

  RowList& list_;
  mutable QHash<int, QAccessible::Id> cells_;
  QObject context_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  auto* list = qobject_cast<RowList*>(object);
  return list && className == QLatin1String(RowList::staticMetaObject.className()) ? new ListAccessible(*list)
                                                                                   : nullptr;
}

}  // namespace

void installRowListAccessible() {
  static const bool isInstalled = [] {
    QAccessible::installFactory(makeAccessible);
    return true;
  }();
  Q_UNUSED(isInstalled);
}

}  // namespace tamboro
