#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include "views/controls/EditField.h"
#include "views/tags/TagFieldList.h"
#include "views/tags/TagListEditorView.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The sheet over a card with this many tags; the small card's own two without a number.
struct Tags {
  TestStore store;
  QWidget window;
  TagListEditorView* sheet = nullptr;

  explicit Tags(std::optional<int> count = std::nullopt) {
    Tree card = sampleCard();
    if (count) {
      std::string list = "<TagList>";
      for (int tag = 0; tag < *count; ++tag)
        list += "<TagPrm><Nm0>" + std::to_string('A' + tag % 26) + "</Nm0></TagPrm>";
      card["SYSTEM/tag_list.spd"] = list + "</TagList>";
    }
    store.open(card);
    sheet = new TagListEditorView(store.library, &window);
    window.show();
    sheet->open();
    MainWindow::settle();
  }
  EditField* field(int row) { return sheet->findChild<EditField*>(QStringLiteral("tagName%1").arg(row)); }
  /// The row whose field has the keyboard; -1 elsewhere.
  int focusedRow() {
    const QWidget* focused = sheet->focusWidget();
    const QString name = focused ? focused->objectName() : QString();
    return name.startsWith(QStringLiteral("tagName")) ? name.mid(7).toInt() : -1;
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(sheet->focusWidget(), key, modifiers);
  }
  bool isInSight(int row) {
    const QWidget* own = field(row);
    return own && own->parentWidget()->rect().contains(own->geometry());
  }
  std::string name(int tag) const { return store.library.tagList()->tagName(tag).value_or("none"); }
  /// Delivers what is queued, the end of what was deleted too.
  static void settle() {
    MainWindow::settle();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
};

TEST(TagListEditor, EachKeyIsAnEditAndFieldsReadThemselvesBack) {
  Tags tags;
  EXPECT_EQ(tags.focusedRow(), 0);
  EditField& field = *tags.field(0);
  field.setCursorPosition(1);
  tags.store.turn([&] { QTest::keyClicks(&field, QStringLiteral("h")); });
  EXPECT_EQ(tags.name(0), "Khick");
  EXPECT_EQ(field.cursorPosition(), 2);
  tags.store.turn([&] { QTest::keyClicks(&field, QStringLiteral("u")); });
  MainWindow::settle();
  EXPECT_EQ(field.cursorPosition(), 3);
  tags.store.library.undoManager().undo();
  MainWindow::settle();
  EXPECT_EQ(field.text(), QStringLiteral("Khick"));

  field.clear();
  QTest::keyClicks(&field, QStringLiteral("Twelve chars!"));
  EXPECT_EQ(field.text(), QStringLiteral("Twelve chars"));
  field.selectAll();
  QTest::keyClick(&field, Qt::Key_Backspace);
  EXPECT_EQ(tags.name(0), "");
  EXPECT_EQ(tags.name(1), "Snare");
  EXPECT_EQ(field.placeholderText(), QStringLiteral("Tag Name"));
}

TEST(TagListEditor, TheKeyboardWalksThroughAllRowsAndOut) {
  Tags tags(40);
  QPushButton& done = *tags.sheet->findChild<QPushButton*>(QStringLiteral("doneButton"));
  for (int row = 1; row < 40; ++row) {
    tags.key(row % 3 == 0 ? Qt::Key_Tab : row % 3 == 1 ? Qt::Key_Down : Qt::Key_Return);
    ASSERT_EQ(tags.focusedRow(), row);
    ASSERT_TRUE(tags.isInSight(row)) << row;
  }
  tags.key(Qt::Key_Return);
  EXPECT_TRUE(tags.sheet->isVisible()) << "Return in a name closes nothing";
  EXPECT_EQ(tags.focusedRow(), 39);
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.sheet->focusWidget(), &done);
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.focusedRow(), 0);
  EXPECT_TRUE(tags.isInSight(0));
  tags.key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(tags.sheet->focusWidget(), &done);
  tags.key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(tags.focusedRow(), 39);
  tags.key(Qt::Key_Up);
  EXPECT_EQ(tags.focusedRow(), 38);
  done.click();
  EXPECT_FALSE(tags.sheet->isVisible());
}

TEST(TagListEditor, AHostileListHasFieldsOnlyAroundWhatIsInSight) {
  Tags tags(10'000);
  const auto fieldCount = [&] { return tags.sheet->findChildren<EditField*>().size(); };
  EXPECT_LT(fieldCount(), 300);
  tags.field(0)->setText(QStringLiteral("draft"));
  auto& list = *tags.sheet->findChild<TagFieldList*>();
  list.verticalScrollBar()->setValue(list.verticalScrollBar()->maximum());
  Tags::settle();
  EXPECT_LT(fieldCount(), 300);
  EXPECT_TRUE(tags.isInSight(9'999));
  EXPECT_EQ(tags.focusedRow(), 0) << "the field in use outlives scrolling";
  QTest::keyClicks(tags.field(9'999), QStringLiteral("!"));
  EXPECT_EQ(tags.name(9'999), std::string(1, 'A' + 9'999 % 26) + "!");
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.focusedRow(), 1);
  EXPECT_TRUE(tags.isInSight(1));
  Tags::settle();
  EXPECT_EQ(tags.field(9'999), nullptr);
}

TEST(TagListEditor, FollowsAnotherListAndSaysThatOneIsEmpty) {
  Tags tags(3);
  Tree card = sampleCard();
  card["SYSTEM/tag_list.spd"] = "<TagList/>";
  tags.store.open(card);
  Tags::settle();
  EXPECT_TRUE(tags.sheet->findChildren<EditField*>().isEmpty());
  EXPECT_TRUE(tags.sheet->findChild<QLabel*>(QStringLiteral("noTags"))->isVisible());
  tags.store.open();
  Tags::settle();
  ASSERT_TRUE(tags.field(1));
  EXPECT_EQ(tags.field(1)->text(), QStringLiteral("Snare"));
  EXPECT_FALSE(tags.sheet->findChild<QLabel*>(QStringLiteral("noTags"))->isVisible());
}

}  // namespace
}  // namespace tamboro::test
