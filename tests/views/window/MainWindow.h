#pragma once

#include <QtTest>
#include <QtWidgets>

#include "audio/SamplePlayer.h"
#include "support/TestStore.h"
#include "views/HandPrompts.h"
#include "views/lists/RowList.h"
#include "views/window/ContentView.h"

namespace tamboro::test {

inline QString q(const char* text) {
  return QString::fromUtf8(text);
}

/// Delivers what is queued, and what that queues; what was to be deleted later is gone then.
inline void settle() {
  for (int turn = 0; turn < 3; ++turn) {
    QApplication::sendPostedEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
  }
}

/// The entries that are offered, one after the other; what parts them as "-".
inline std::string entries(const QMenu& menu) {
  QStringList titles;
  for (const QAction* entry : menu.actions())
    titles << (entry->isSeparator() ? q("-") : entry->text());
  return titles.join(QLatin1Char('|')).toStdString();
}

/// The main window over a store in memory. Not shown at first, so that a case can prepare what a start finds.
struct MainWindow {
  TestStore store;
  RolandLibrary& library = store.library;
  SamplePlayer player;
  HandPrompts prompts;
  QMainWindow window;
  ContentView& content;

  MainWindow() : content(*new ContentView(store.library, player, store.files, store.defaults, prompts)) {
    window.setCentralWidget(&content);
  }
  void show() {
    window.resize(1200, 800);
    window.show();
    window.activateWindow();
    settle();
  }
  /// Shows the window with a card in it and one of its kits in the editor.
  void showCard(const Tree& card = sampleCard(), Slot slot = 1) {
    show();
    store.open(card);
    select(slot);
  }
  void select(std::optional<Slot> slot) {
    library.setSelectedKitSlot(slot);
    settle();
  }
  static void settle() { test::settle(); }
  template<class Kind = QWidget>
  Kind& find(const std::string& name) {
    auto* found = window.findChild<Kind*>(QString::fromStdString(name));
    if (found == nullptr) throw std::runtime_error("no " + name);
    return *found;
  }
  std::string text(const std::string& name) { return find<QLabel>(name).text().toStdString(); }
  /// On the widget that has the keyboard, which a platform without a screen knows by its window only.
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.focusWidget(), key, modifiers);
    settle();
  }
  std::string focus() { return window.focusWidget()->objectName().toStdString(); }
  void click(const char* name) {
    QTest::mouseClick(&find(name), Qt::LeftButton);
    settle();
  }
  /// Uses a control as a hand does: a row of its menu is chosen, a slider goes a step down, a switch is clicked.
  void use(const std::string& name, const char* row = nullptr) {
    auto& control = find(name);
    if (auto* menu = qobject_cast<QComboBox*>(&control)) {
      menu->setCurrentIndex(menu->findText(q(row)));
      Q_EMIT menu->activated(menu->currentIndex());
    } else if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
      button->click();
    } else {
      QTest::keyClick(&control, Qt::Key_Left);
    }
    settle();
  }
  /// What such a control shows.
  QString shown(const std::string& name) {
    if (auto* menu = qobject_cast<QComboBox*>(&find(name))) return menu->currentText();
    if (auto* button = qobject_cast<QAbstractButton*>(&find(name))) return q(button->isChecked() ? "on" : "off");
    if (auto* label = qobject_cast<QLabel*>(&find(name))) return label->text();
    return QString::number(find<QSlider>(name).value());
  }
  void pressSave() { QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier); }
  /// Puts another card into the place of the open one, so that a save fails.
  void swapCard() { store.mountCard("fat:9999-0000", sampleCard()); }
  /// Opens a context menu by the mouse, and closes the one before.
  QMenu& menu(QWidget& widget, QPoint place, const char* name) {
    for (auto* open : window.findChildren<QMenu*>(q(name)))
      open->close();
    settle();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
    return find<QMenu>(name);
  }
  static void choose(QMenu& menu, const char* title) {
    for (QAction* entry : menu.actions())
      if (entry->text() == q(title)) entry->trigger();
    menu.close();
    settle();
  }
};

/// One of the window's lists.
struct ListInWindow {
  MainWindow& main;
  RowList& list;
  const char* menuName;

  /// Records in their order; headers in brackets, details as "+".
  std::string rows() const {
    std::string text;
    for (const RowKey& key : list.rows().rows()) {
      const std::string title = list.rows().indexOf(key).data().toString().toStdString();
      text += key.kind == RowKey::Kind::header   ? "[" + title + "] "
              : key.kind == RowKey::Kind::detail ? "+ "
                                                 : std::to_string(key.record) + " ";
    }
    return text;
  }
  QModelIndex cell(const RowKey& row, int column) const { return list.rows().indexOf(row).siblingAtColumn(column); }
  QPoint place(const RowKey& row, int column) const { return list.cellRect(row, column).center(); }
  void click(const RowKey& row, int column = 0, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, place(row, column));
    settle();
  }
  void doubleClick(const RowKey& row, int column, QPoint shift = {}) {
    const QPoint point = place(row, column) + shift;
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, point);
    settle();
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, point);
    settle();
  }
  void key(Qt::Key pressed) {
    QTest::keyClick(&list, pressed);
    settle();
  }
  QMenu& menu(const RowKey& row, int column = 0) { return main.menu(*list.viewport(), place(row, column), menuName); }
};

}  // namespace tamboro::test
