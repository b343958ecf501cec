#include "views/controls/Accessible.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QComboBox>
#include <QHash>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>

namespace tamboro {

namespace {

/// A window, with the context menus that are open over it behind its own parts.
class WindowAccessible : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  int childCount() const override { return parts() + static_cast<int>(menus().size()); }
  QAccessibleInterface* child(int place) const override {
    if (place < parts()) return QAccessibleWidget::child(place);
    return QAccessible::queryAccessibleInterface(menus().value(place - parts()));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const qsizetype menu = child ? menus().indexOf(qobject_cast<QWidget*>(child->object())) : -1;
    return menu < 0 ? QAccessibleWidget::indexOfChild(child) : parts() + static_cast<int>(menu);
  }

 private:
  int parts() const { return QAccessibleWidget::childCount(); }
  QWidgetList menus() const {
    QWidgetList found;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      const auto* menu = qobject_cast<QMenu*>(top);
      // A menu bar's menus are found below it.
      if (menu && menu->isVisible() && menu->parentWidget() && menu->parentWidget()->window() == widget() &&
          menu->menuAction()->associatedObjects().isEmpty())
        found << top;
    }
    return found;
  }
};

/// A row of a list that has one column to look at.
class RowAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowAccessible(QListView& list, const QModelIndex& index) : list_(&list), index_(index) {}

  const QPersistentModelIndex& index() const { return index_; }
  bool isValid() const override { return list_ && index_.isValid(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return parent() ? parent()->window() : nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_.data()); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::Role role() const override { return QAccessible::ListItem; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Description) return index_.data(Qt::AccessibleDescriptionRole).toString();
    if (kind != QAccessible::Name) return {};
    const QString spoken = index_.data(Qt::AccessibleTextRole).toString();
    return spoken.isEmpty() ? index_.data(Qt::DisplayRole).toString() : spoken;
  }
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect row = list_->visualRect(index_);
    return row.isEmpty() ? QRect() : QRect(list_->viewport()->mapToGlobal(row.topLeft()), row.size());
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invalid = !isValid();
    state.invisible = state.invalid || !list_->isVisible();
    if (state.invalid) return state;
    state.offscreen = !list_->viewport()->rect().intersects(list_->visualRect(index_));
    state.disabled = !index_.flags().testFlag(Qt::ItemIsEnabled);
    state.selectable = index_.flags().testFlag(Qt::ItemIsSelectable);
    state.selected = list_->selectionModel() && list_->selectionModel()->isSelected(index_);
    state.focusable = true;
    state.focused = list_->hasFocus() && list_->currentIndex() == index_;
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface && isValid() ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (!isValid()) return;
    list_->setFocus();
    list_->setCurrentIndex(index_);
    if (name != pressAction()) return;
    // What Return does there: a picker takes the row, a panel opens it.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(list_, &press);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<QListView> list_;
  QPersistentModelIndex index_;
};

/// The toolkit's own counts the columns that a list doesn't show, and complains when it looks for their cells.
class PlainListAccessible : public QAccessibleWidget {
 public:
  explicit PlainListAccessible(QListView& list) : QAccessibleWidget(&list, QAccessible::List), list_(list) {}
  ~PlainListAccessible() override {
    for (const QAccessible::Id id : rows_)
      QAccessible::deleteAccessibleInterface(id);
  }

  QAccessibleInterface* parent() const override {
    QComboBox* owner = picker();
    return owner ? QAccessible::queryAccessibleInterface(owner) : QAccessibleWidget::parent();
  }
  QString text(QAccessible::Text kind) const override {
    const QString own = QAccessibleWidget::text(kind);
    if (!own.isEmpty() || kind != QAccessible::Name) return own;
    const QString pickers = picker() ? picker()->accessibleName() : QString();
    return pickers.isEmpty() ? QStringLiteral("Choices") : pickers;
  }
  int childCount() const override { return list_.model() ? list_.model()->rowCount(list_.rootIndex()) : 0; }
  QAccessibleInterface* child(int place) const override {
    if (place < 0 || place >= childCount()) return nullptr;
    const QModelIndex index = list_.model()->index(place, list_.modelColumn(), list_.rootIndex());
    const auto known = rows_.constFind(place);
    if (known != rows_.constEnd()) {
      auto* row = static_cast<RowAccessible*>(QAccessible::accessibleInterface(*known));
      if (row && row->index() == index) return row;
      QAccessible::deleteAccessibleInterface(*known);
    }
    auto* row = new RowAccessible(list_, index);
    rows_[place] = QAccessible::registerAccessibleInterface(row);
    return row;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    return row && row->isValid() ? row->index().row() : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return row(list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y))));
  }
  QAccessibleInterface* focusChild() const override { return list_.hasFocus() ? row(list_.currentIndex()) : nullptr; }

 private:
  QComboBox* picker() const { return list_.parent() ? qobject_cast<QComboBox*>(list_.parent()->parent()) : nullptr; }
  QAccessibleInterface* row(const QModelIndex& index) const { return index.isValid() ? child(index.row()) : nullptr; }

  QListView& list_;
  mutable QHash<int, QAccessible::Id> rows_;
};

/// Goes by its chosen row, as the toolkit's own do on this desktop, but by its own name where none is chosen.
class PickerAccessible : public QAccessibleWidget {
 public:
  explicit PickerAccessible(QComboBox& picker) : QAccessibleWidget(&picker, QAccessible::ComboBox), picker_(picker) {}

  int childCount() const override { return 1; }
  QAccessibleInterface* child(int place) const override {
    return place == 0 ? QAccessible::queryAccessibleInterface(picker_.view()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child && child->object() == picker_.view() ? 0 : -1;
  }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QString text(QAccessible::Text kind) const override {
    const bool goesByRow = kind == QAccessible::Name || kind == QAccessible::Value;
    const QString row = goesByRow ? picker_.currentText() : QString();
    return row.isEmpty() && kind != QAccessible::Value ? QAccessibleWidget::text(kind) : row;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = picker_.view()->isVisible();
    state.collapsed = !state.expanded;
    state.hasPopup = true;
    return state;
  }
  QStringList actionNames() const override { return {showMenuAction(), pressAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (name == setFocusAction()) return QAccessibleWidget::doAction(name);
    picker_.view()->isVisible() ? picker_.hidePopup() : picker_.showPopup();
  }

 private:
  QComboBox& picker_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  if (className == QLatin1String("QMainWindow"))
    return new WindowAccessible(static_cast<QWidget*>(object), QAccessible::Window);
  if (className == QLatin1String("QDialog"))
    return new WindowAccessible(static_cast<QWidget*>(object), QAccessible::Dialog);
  if (className == QLatin1String("QSplitterHandle"))
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Separator);
  if (className == QLatin1String("QListView")) return new PlainListAccessible(*static_cast<QListView*>(object));
  if (auto* picker = qobject_cast<QComboBox*>(object); picker && className == QLatin1String("QComboBox"))
    return picker->isEditable() ? nullptr : new PickerAccessible(*picker);
  return nullptr;
}

}  // namespace

void installAccessible() {
  static const bool isInstalled = [] {
    QAccessible::installFactory(makeAccessible);
    return true;
  }();
  Q_UNUSED(isInstalled);
}

}  // namespace tamboro
