#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QScrollBar>
#include <functional>

#include "app/AboutPanel.h"
#include "app/CheckingSheet.h"
#include "app/MenuBar.h"
#include "app/SettingsWindow.h"
#include "views/controls/AlertSheet.h"
#include "views/controls/FileViewer.h"
#include "views/samples/WaveLoopSection.h"
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

TEST(Names, EveryControlOfTheWindowAndOfWhatItOpensHasTwo) {
  MainWindow main;
  main.window.setMenuBar(new MenuBar(main.store.library));
  main.show();
  EXPECT_EQ(nameless(main.window), "") << "the welcome screen";
  main.store.open();
  main.store.library.setSelectedKitSlot(1);
  MainWindow::settle();

  new WaveLoopSection(main.store.library, 205, &main.window);
  EXPECT_EQ(nameless(main.window), "") << "the window";

  // What the window opens by itself.
  const std::pair<const char*, std::function<void()>> opened[] = {
      {"New Kit", [&] { main.find<QAbstractButton>("newKitButton").click(); }},
      {"Edit Tags", [&] { main.find<QAbstractButton>("tagsButton").click(); }},
      {"Apply Settings", [&] { main.find<QAbstractButton>("applyToAllButton").click(); }},
      {"Rename",
       [&] {
         QTest::keyClick(&main.find("waveList"), Qt::Key_A, Qt::ControlModifier);
         MainWindow::settle();
         main.find<QAbstractButton>("renameSelectedButton").click();
       }},
      {"Keyboard Shortcuts", [&] { main.store.library.setShowingShortcutsHelp(true); }},
  };
  for (const auto& [title, open] : opened) {
    open();
    MainWindow::settle();
    const QPointer<QDialog> sheet = main.window.findChild<QDialog*>();
    if (!sheet) {
      ADD_FAILURE() << title << " didn't open";
      continue;
    }
    EXPECT_TRUE(sheet->windowTitle().startsWith(QString::fromUtf8(title))) << sheet->windowTitle().toStdString();
    EXPECT_EQ(nameless(*sheet), "") << title;
    sheet->reject();
    delete sheet;
  }
  // And what the desktop's part opens over it.
  NoFileViewer viewer;
  auto* form = new PreferencesView(main.store.library, main.store.files, main.store.jobs, viewer, main.prompts);
  EXPECT_EQ(nameless(SettingsWindow(form, &main.window)), "") << "the settings";
  EXPECT_EQ(nameless(AboutPanel(aboutTexts({}, {}), &main.window)), "") << "About";
  EXPECT_EQ(nameless(CheckingSheet(&main.window)), "") << "the update check";
  EXPECT_EQ(nameless(AlertSheet({.title = QStringLiteral("?"), .text = {}}, &main.window)), "") << "an alert";
}

}  // namespace
}  // namespace tamboro::test
