#include <gtest/gtest.h>

#include "views/controls/EditField.h"
#include "views/tags/TagFieldList.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

/// The sheet over a card with this many tags; the small card's own two without a number.
struct Tags : MainWindow {
  QWidget* sheet = nullptr;

  explicit Tags(std::optional<int> count = {}) {
    showCard(cardWith(count));
    content.setShowingTagEditor(true);
    settle();
    sheet = &find("tagEditor");
  }
  static Tree cardWith(std::optional<int> count) {
    Tree card = sampleCard();
    std::string list;
    for (int tag = 0; tag < count; ++tag)
      list += "<TagPrm><Nm0>65</Nm0></TagPrm>";
    if (count) card["SYSTEM/tag_list.spd"] = "<TagList>" + list + "</TagList>";
    return card;
  }
  EditField* field(int row) { return sheet->findChild<EditField*>(QStringLiteral("tagName%1").arg(row)); }
  std::string focus() { return sheet->focusWidget()->objectName().toStdString(); }
  void key(Qt::Key key) { QTest::keyClick(sheet->focusWidget(), key); }
  bool isInSight(int row) {
    const QWidget* own = field(row);
    return own && own->parentWidget()->rect().contains(own->geometry());
  }
  std::string name(int tag) const { return library.tagList()->tagName(tag).value_or("none"); }
};

TEST(TagListEditor, EachKeyIsAnEditOfItsTagAndFieldsReadThemselvesBack) {
  Tags tags;
  EditField& field = *tags.field(0);
  field.setCursorPosition(1);
  for (const char* typed : {"h", "u"})
    tags.store.turn([&] { QTest::keyClicks(&field, q(typed)); });
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
  for (int row = 0; row < 40; ++row) {
    ASSERT_EQ(tags.focus(), "tagName" + std::to_string(row));
    ASSERT_TRUE(tags.isInSight(row)) << row;
    tags.key(row % 3 == 0 ? Qt::Key_Return : row % 3 == 1 ? Qt::Key_Down : Qt::Key_Tab);
  }
  EXPECT_TRUE(tags.sheet->isVisible()) << "Return in a name closes nothing";
  tags.key(Qt::Key_Tab);
  EXPECT_EQ(tags.focus(), "doneButton");
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
  tags.store.open(Tags::cardWith(0));
  settle();
  EXPECT_TRUE(tags.sheet->findChildren<EditField*>().isEmpty());
  tags.store.open();
  settle();
  ASSERT_TRUE(tags.field(1));
  EXPECT_EQ(tags.field(1)->text(), q("Snare"));
}

}  // namespace
}  // namespace tamboro::test
