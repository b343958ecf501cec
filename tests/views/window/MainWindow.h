#pragma once

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QTest>

#include "audio/SamplePlayer.h"
#include "support/TestStore.h"
#include "views/HandPrompts.h"
#include "views/window/ContentView.h"

namespace tamboro::test {

/// The main window over a store in memory. Not shown at first, so that a case can prepare what a start finds.
struct MainWindow {
  TestStore store;
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
  /// Shows the window with the small card in it.
  void showCard() {
    show();
    store.open();
    settle();
  }
  /// Delivers what is queued, and what that queues.
  static void settle() {
    for (int turn = 0; turn < 3; ++turn) {
      QApplication::sendPostedEvents();
      QApplication::processEvents();
    }
  }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    auto* found = window.findChild<Kind*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(std::string("no ") + name);
    return *found;
  }
  std::string text(const char* name) { return find<QLabel>(name).text().toStdString(); }
  void pressSave() { QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier); }
  /// Puts another card into the place of the open one, so that a save fails.
  void swapCard() { store.mountCard("fat:9999-0000", sampleCard()); }
};

}  // namespace tamboro::test
