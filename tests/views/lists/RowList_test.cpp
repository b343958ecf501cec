#include "views/lists/RowList.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "views/lists/RowDelegate.h"

namespace tamboro {
namespace {

class PlainDelegate : public RowDelegate {
 public:
  QRect editorRect(const QStyleOptionViewItem& option, const QModelIndex&) const override { return option.rect; }
  int columnWidth(int column) const override { return column == 1 ? 0 : 30; }

 protected:
  void paintCell(QPainter&, const QStyleOptionViewItem&, const QModelIndex&) const override {}
  int rowHeight(const QModelIndex& index) const override {
    return static_cast<const RowModel*>(index.model())->key(index)->kind == RowKey::Kind::detail ? 50 : 32;
  }
};

constexpr RowKey row(std::int64_t record) {
  return {0, record};
}
constexpr RowKey detailOf(std::int64_t record) {
  return {0, record, RowKey::Kind::detail};
}

/// Three columns: a control, the name, and a control that rows of an odd record lack.
struct Rows {
  QWidget window;
  RowList list{new RowModel(3, value), new PlainDelegate};
  std::vector<std::string> told;

  Rows() {
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    list.setMainColumn(1);
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(&list);
    column->addWidget(new QPushButton);
    window.resize(300, 400);
    QObject::connect(&list, &RowList::cellPressed, [this](const RowKey& key, int cell) {
      told.push_back("cell " + std::to_string(key.record) + "." + std::to_string(cell));
    });
    QObject::connect(&list, &RowList::rowActivated, [this](const RowKey& key, Qt::Key pressed) {
      told.push_back("row " + std::to_string(key.record) + " " +
                     QKeySequence(pressed).toString(QKeySequence::PortableText).toStdString());
    });
    fill(6);
    window.show();
    window.activateWindow();
    QApplication::processEvents();
  }
  ~Rows() { list.setParent(nullptr); }

  static QVariant value(const RowKey& key, int column, int role) {
    const bool isControl = key.kind == RowKey::Kind::record && (column == 0 || (column == 2 && key.record % 2 == 0));
    if (role == rowRole::isControl) return isControl;
    if (role == Qt::DisplayRole && column == 1) return QString::number(key.record);
    return {};
  }
  void fill(std::int64_t count, std::set<std::int64_t> opened = {}) {
    std::vector<RowKey> keys;
    for (std::int64_t record = 0; record < count; ++record) {
      keys.push_back(row(record));
      if (opened.contains(record)) keys.push_back(detailOf(record));
    }
    list.setRows(std::move(keys), {});
  }
  QPoint place(std::int64_t record, int column) const { return list.cellRect(row(record), column).center(); }
  void click(std::int64_t record, int column, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, place(record, column));
  }
  void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&list, pressed, modifiers); }
  std::string selected() const {
    std::string text;
    for (const RowKey& key : list.selectedKeys())
      text += std::to_string(key.record) + (key.kind == RowKey::Kind::detail ? "d " : " ");
    return text;
  }
  std::vector<std::string> takeTold() { return std::exchange(told, {}); }
};

using Told = std::vector<std::string>;

TEST(RowList, AClickPressesAControlOrSelectsARow) {
  Rows rows;
  rows.click(2, 1);
  EXPECT_EQ(rows.selected(), "2 ");
  rows.window.findChild<QPushButton*>()->setFocus();
  rows.click(4, 0);
  rows.click(4, 2);
  EXPECT_EQ(rows.takeTold(), (Told{"cell 4.0", "cell 4.2"}));
  EXPECT_EQ(rows.selected(), "2 ") << "a control selects nothing";
  EXPECT_FALSE(rows.list.hasFocus()) << "and takes no focus";
  rows.click(3, 2);
  EXPECT_EQ(rows.selected(), "3 ") << "an empty slot belongs to its row";
  EXPECT_TRUE(rows.list.hasFocus());
  QTest::mousePress(rows.list.viewport(), Qt::LeftButton, {}, rows.place(4, 0));
  QTest::mouseRelease(rows.list.viewport(), Qt::LeftButton, {}, rows.place(4, 1));
  EXPECT_EQ(rows.takeTold(), Told{}) << "let go beside it";
}

TEST(RowList, TheKeyboardReachesEachControl) {
  Rows rows;
  rows.click(1, 1);
  using enum Qt::Key;
  const struct {
    std::vector<Qt::Key> keys;
    int column;
    Told told;
  } steps[] = {{{Key_Right}, 1, {}},  // an empty slot is no place
               {{Key_Down, Key_Right, Key_Space, Key_Return}, 2, {"cell 2.2", "cell 2.2"}},
               {{Key_F2}, 2, {"row 2 F2"}},
               {{Key_Down}, 1, {}},  // the row below has no control there
               {{Key_Space, Key_Enter, Key_Delete, Key_Backspace},
                1,
                {"row 3 Space", "row 3 Return", "row 3 Del", "row 3 Backspace"}},
               {{Key_Left, Key_Left, Key_Down, Key_Space}, 0, {"cell 4.0"}}};
  for (const auto& step : steps) {
    for (const Qt::Key key : step.keys)
      rows.key(key);
    EXPECT_EQ(rows.list.currentIndex().column(), step.column);
    EXPECT_EQ(rows.takeTold(), step.told);
  }
}

TEST(RowList, SelectsSeveralAndStepsOverDetails) {
  Rows rows;
  rows.fill(6, {1, 5});
  rows.click(0, 1);
  rows.click(3, 1, Qt::ShiftModifier);
  EXPECT_EQ(rows.selected(), "0 1 2 3 ");
  rows.click(1, 1, Qt::ControlModifier);
  rows.click(5, 1, Qt::ControlModifier);
  EXPECT_EQ(rows.selected(), "0 2 3 5 ");
  rows.key(Qt::Key_Down);
  rows.key(Qt::Key_Up);
  EXPECT_EQ(rows.selected(), "4 ") << "the last row's details are no row";
  rows.click(1, 1);
  rows.key(Qt::Key_Down);
  rows.key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(rows.selected(), "1 2 ");
  rows.list.setSelectedKeys({row(2), row(4)});
  rows.fill(5);
  EXPECT_EQ(rows.selected(), "2 4 ") << "kept across other rows";
  rows.click(4, 1);
  rows.fill(3);
  EXPECT_EQ(rows.selected(), "");
  EXPECT_EQ(rows.list.currentIndex().row(), 2) << "the keyboard stays near the row that went";
}

TEST(RowList, DetailsLiveAsLongAsTheirRow) {
  Rows rows;
  rows.fill(40, {2});
  QPointer<QWidget> detail = new QWidget;
  auto* field = new QLineEdit(detail);
  rows.list.openDetail(detailOf(2), detail);
  EXPECT_EQ(detail->geometry(), QRect(0, 3 * 32, rows.list.viewport()->width(), 50));
  rows.list.verticalScrollBar()->setValue(600);
  rows.list.setFocus();
  rows.key(Qt::Key_Tab);
  EXPECT_EQ(rows.window.focusWidget(), field) << "next to the list";
  EXPECT_EQ(detail->y(), 0) << "brought into sight";
  rows.fill(41, {2});
  EXPECT_EQ(rows.list.detail(detailOf(2)), detail);
  rows.fill(41);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(detail.isNull());
}

TEST(RowList, AFieldCommitsOnReturnOnlyAndGoesWithItsRow) {
  Rows rows;
  rows.list.setSelectedKeys({row(1)});
  const auto open = [&](std::int64_t record) {
    rows.list.openField(row(record), {.objectName = {}, .accessibleName = {}, .placeholder = {}, .text = {}},
                        [&](const QString& text) { rows.told.push_back(text.toStdString()); });
    return rows.list.field(row(record));
  };
  QLineEdit* field = open(3);
  QTest::keyClicks(field, QStringLiteral("new"));
  QTest::keyClick(field, Qt::Key_Escape);
  QTest::keyClick(field, Qt::Key_Down);
  rows.list.setFocus();
  rows.fill(6, {0});
  EXPECT_EQ(rows.list.field(row(3)), field);
  EXPECT_TRUE(rows.list.cellRect(row(3), 1).contains(field->geometry())) << "it went with its row";
  EXPECT_EQ(rows.selected(), "1 ");
  EXPECT_EQ(rows.takeTold(), Told{});
  field->setFocus();
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(rows.takeTold(), Told{"new"});
  EXPECT_EQ(rows.list.field(row(3)), nullptr);
  EXPECT_EQ(rows.window.focusWidget(), &rows.list);
  open(5);
  rows.fill(5);
  EXPECT_EQ(rows.list.field(row(5)), nullptr);
}

TEST(RowList, RowsThatComeAboveMoveNothingUnderTheHand) {
  Rows rows;
  rows.fill(100);
  rows.list.reveal(row(50));
  const QPoint before = rows.place(50, 1);
  EXPECT_TRUE(rows.list.viewport()->rect().contains(before));
  rows.fill(100, {1});
  EXPECT_EQ(rows.place(50, 1), before);
  // At the list's head rows do move, and the second click is meant for the row of the first.
  rows.fill(9);
  QObject::connect(&rows.list, &RowList::rowDoubleClicked, [&](const RowKey& key, const QPoint&) {
    rows.told.push_back("double " + std::to_string(key.record));
  });
  const QPoint point = rows.place(4, 1);
  rows.click(4, 1);
  rows.fill(9, {1});
  QTest::mouseDClick(rows.list.viewport(), Qt::LeftButton, {}, point);
  EXPECT_EQ(rows.takeTold(), Told{"double 4"});
  QTest::mouseClick(rows.list.viewport(), Qt::LeftButton, {}, point);
  EXPECT_EQ(rows.selected(), "4 ") << "nor does one too far from the first to count as a double click";
}

}  // namespace
}  // namespace tamboro
