#include <gtest/gtest.h>

#include "app/AboutPanel.h"
#include "app/CheckingSheet.h"
#include "app/MenuBar.h"
#include "app/SettingsWindow.h"
#include "views/controls/AlertSheet.h"
#include "views/controls/FileViewer.h"
#include "views/settings/PreferencesView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

struct NoFileViewer : FileViewer {
  void showFolder(const Path&) override {}
};

// A picker's list and a stepper's field are the toolkit's, and assistive tools see the control that they belong to. So
// are a splitter's first handle and the button of a menu bar without room, which are hidden.
bool isPartOfControl(const QWidget& widget) {
  for (const QWidget* above = widget.parentWidget(); above; above = above->parentWidget())
    if (qobject_cast<const QComboBox*>(above) || qobject_cast<const QAbstractSpinBox*>(above)) return true;
  return qobject_cast<const QScrollBar*>(&widget) || (widget.isHidden() && widget.objectName().startsWith(u"qt_"));
}

std::string nameless(const QWidget& root) {
  std::string found;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    const bool isControl = widget->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(widget);
    if (!isControl || isPartOfControl(*widget)) continue;
    QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
    if (widget->objectName().isEmpty() || !told || told->text(QAccessible::Name).isEmpty())
      found += std::string(" ") + widget->metaObject()->className() + ":" + widget->objectName().toStdString();
  }
  return found;
}

/// The window's own sheets but one are looked through where the program is driven from outside.
TEST(Names, EveryControlOfTheWindowAndOfWhatTheDesktopOpensHasTwo) {
  MainWindow main;
  main.window.setMenuBar(new MenuBar(main.library));
  main.showCard();
  EXPECT_EQ(nameless(main.window), "") << "the window";
  QTest::keyClick(&main.find("waveList"), Qt::Key_A, Qt::ControlModifier);
  MainWindow::settle();
  main.click("renameSelectedButton");
  EXPECT_EQ(nameless(main.find<QDialog>("batchRenameSheet")), "");
  NoFileViewer viewer;
  auto* form = new PreferencesView(main.library, main.store.files, main.store.jobs, viewer, main.prompts);
  EXPECT_EQ(nameless(SettingsWindow(form, &main.window)), "") << "the settings";
  EXPECT_EQ(nameless(AboutPanel(aboutTexts({}, {}), &main.window)), "") << "About";
  EXPECT_EQ(nameless(CheckingSheet(&main.window)), "") << "the update check";
  EXPECT_EQ(nameless(AlertSheet({.title = QStringLiteral("?"), .text = {}}, &main.window)), "") << "an alert";
}

}  // namespace
}  // namespace tamboro::test
