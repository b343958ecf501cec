#include <gtest/gtest.h>

#include <QScrollBar>

#include "views/controls/EditField.h"
#include "views/tags/TagFieldList.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The sheet over a card with this many tags; the small card's own two without a number.
struct Tags : MainWindow {
  QWidget* sheet = nullptr;

  explicit Tags(int count = 0) {
    Tree card = sampleCard();
    std::string list;
    for (int tag = 0; tag < count; ++tag)
      list += "<TagPrm><Nm0>65</Nm0></TagPrm>";
    if (count > 0) card["SYSTEM/tag_list.spd"] = "<TagList>" + list + "</TagList>";
    showCard(card);
    content.setShowingTagEditor(true);
    settle();
    sheet = &find("tagEditor");
  }
  EditField* field(int row) { return sheet->findChild<EditField*>(QStringLiteral("tagName%1").arg(row)); }
  std::string focus() { return sheet->focusWidget()->objectName().toStdString(); }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(sheet->focusWidget(), key, modifiers);
  }
  bool isInSight(int row) {
    const QWidget* own = field(row);
    return own && own->parentWidget()->rect().contains(own->geometry());
  }
  std::string name(int tag) const { return library.tagList()->tagName(tag).value_or("none"); }
};

TEST(TagListEditor, EachKeyIsAnEditOfItsTagAndFieldsReadThemselvesBack) {
  Tags tags;
  EXPECT_EQ(tags.focus(), "tagName0");
  EditField& field = *tags.field(0);
  field.setCursorPosition(1);
  tags.store.turn([&] { QTest::keyClicks(&field, q("h")); });
  tags.store.turn([&] { QTest::keyClicks(&field, q("u")); });
  settle();
  EXPECT_EQ(tags.name(0), "Khuick");
  EXPECT_EQ(field.cursorPosition(), 3);
  tags.library.undoManager().undo();
  settle();
  EXPECT_EQ(field.text(), q("Khick"));
  field.clear();
  QTest::keyClicks(&field, q("Twelve chars!"));
  EXPECT_EQ(field.text(), q("Twelve chars"));
  EXPECT_EQ(tags.name(1), "Snare");
}

TEST(TagListEditor, TheKeyboardWalksThroughAllRowsAndOut) {
  Tags tags(40);
  for (int row = 1; row < 40; ++row) {
    tags.key(row % 3 == 0 ? Qt::Key_Tab : row % 3 == 1 ? Qt::Key_Down : Qt::Key_Return);
    ASSERT_EQ(tags.focus(), "tagName" + std::to_string(row));
    ASSERT_TRUE(tags.isInSight(row)) << row;
  }
  tags.key(Qt::Key_Return);
  EXPECT_TRUE(tags.sheet->isVisible()) << "Return in a name closes nothing";
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.focus(), "doneButton");
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.focus(), "tagName0");
  EXPECT_TRUE(tags.isInSight(0));
  tags.key(Qt::Key_Backtab, Qt::ShiftModifier);
  tags.key(Qt::Key_Backtab, Qt::ShiftModifier);
  tags.key(Qt::Key_Up);
  EXPECT_EQ(tags.focus(), "tagName38");
}

TEST(TagListEditor, AHostileListHasFieldsOnlyAroundWhatIsInSight) {
  Tags tags(10'000);
  auto& bar = *tags.sheet->findChild<TagFieldList*>()->verticalScrollBar();
  bar.setValue(bar.maximum());
  settle();
  EXPECT_LT(tags.sheet->findChildren<EditField*>().size(), 300);
  EXPECT_TRUE(tags.isInSight(9'999));
  EXPECT_EQ(tags.focus(), "tagName0") << "the field in use outlives scrolling";
  QTest::keyClicks(tags.field(9'999), q("!"));
  EXPECT_EQ(tags.name(9'999), "A!");
  Tree card = sampleCard();
  card["SYSTEM/tag_list.spd"] = "<TagList/>";
  tags.store.open(card);
  settle();
  EXPECT_TRUE(tags.sheet->findChildren<EditField*>().isEmpty());
  EXPECT_TRUE(tags.sheet->findChild<QLabel*>(q("noTags"))->isVisible());
  tags.store.open();
  settle();
  ASSERT_TRUE(tags.field(1));
  EXPECT_EQ(tags.field(1)->text(), q("Snare"));
}

}  // namespace
}  // namespace tamboro::test
