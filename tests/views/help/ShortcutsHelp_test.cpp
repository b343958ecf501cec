#include <gtest/gtest.h>

#include <QPushButton>

#include "views/help/KeyboardShortcutsHelpView.h"
#include "views/look/Look.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

std::vector<QLabel*> labels(QWidget& sheet, const char* name) {
  const auto found = sheet.findChildren<QLabel*>(QString::fromLatin1(name));
  return {found.begin(), found.end()};
}

TEST(KeyboardShortcutsHelpView, ShowsTheTableInTwoColumnsAtAnyFontSize) {
  const QFont before = QApplication::font();
  for (const int size : {10, 13, 18}) {
    QFont font = before;
    font.setPixelSize(size);
    Look::takeFonts(font);
    KeyboardShortcutsHelpView sheet(nullptr);
    sheet.show();
    MainWindow::settle();
    const auto keys = labels(sheet, "shortcutKeys");
    const auto descriptions = labels(sheet, "shortcutDescription");
    ASSERT_EQ(keys.size(), 13U);
    ASSERT_EQ(descriptions.size(), keys.size());
    int last = -1;
    for (std::size_t row = 0; row < keys.size(); ++row) {
      const std::string name = keys[row]->text().toStdString() + " at " + std::to_string(size);
      EXPECT_GE(keys[row]->width(), keys[row]->sizeHint().width()) << name;
      EXPECT_EQ(keys[row]->width(), keys[0]->width()) << name;
      EXPECT_EQ(descriptions[row]->x(), descriptions[0]->x()) << name;
      EXPECT_GE(descriptions[row]->width(), descriptions[row]->sizeHint().width()) << name;
      EXPECT_GT(keys[row]->y(), last) << name;
      last = keys[row]->y() + keys[row]->height() / 2;
#ifndef Q_OS_MACOS
      EXPECT_FALSE(keys[row]->accessibleName().contains(QStringLiteral("⌘"))) << name;
      EXPECT_EQ(keys[row]->accessibleName().contains(QStringLiteral("Ctrl")),
                keys[row]->text().contains(QStringLiteral("⌘")))
          << name;
#endif
    }
  }
  Look::takeFonts(before);
}

TEST(KeyboardShortcutsHelpView, EveryWayOfClosingClearsTheProperty) {
  MainWindow main;
  main.showCard();
  RolandLibrary& library = main.store.library;
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
    library.setShowingShortcutsHelp(true);
    main.settle();
    QTest::keyClick(&main.find<QDialog>("shortcutsHelp"), key);
    EXPECT_FALSE(library.showingShortcutsHelp()) << key;
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(main.window.findChild<QDialog*>(QStringLiteral("shortcutsHelp")), nullptr) << key;
  }
  library.setShowingShortcutsHelp(true);
  main.settle();
  library.setShowingShortcutsHelp(false);
  main.settle();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the property closes it too";
}

TEST(KeyboardShortcutsHelpView, ComesAgainWhileTheClosedSheetStillLives) {
  MainWindow main;
  main.showCard();
  main.store.library.setShowingShortcutsHelp(true);
  main.settle();
  auto* first = &main.find<QDialog>("shortcutsHelp");
  first->reject();
  main.store.library.setShowingShortcutsHelp(true);
  main.settle();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  auto& second = main.find<QDialog>("shortcutsHelp");
  EXPECT_TRUE(second.isVisible());
  QTest::keyClick(&second, Qt::Key_Escape);
  EXPECT_FALSE(main.store.library.showingShortcutsHelp());
}

}  // namespace
}  // namespace tamboro::test
