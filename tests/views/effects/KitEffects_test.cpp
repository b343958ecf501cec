#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "platform/EventTurns.h"
#include "support/TestStore.h"
#include "views/Settle.h"
#include "views/controls/DisclosureGroup.h"
#include "views/effects/FXParamRow.h"
#include "views/effects/KitEffectsView.h"

namespace tamboro::test {
namespace {

using test::settle;

using Kind = FXParamDef::Kind;
constexpr Slot rock = 1;

TEST(FXParam, NumbersAreShownAsStoredAndControlsAtTheNearestPlace) {
  static constexpr std::string_view three[] = {"a", "b", "c"};
  const struct {
    Kind kind;
    std::int64_t value;
    const char* text;
    int position;
  } cases[] = {
      {FXParamDef::Range{0, 1300, "ms"}, 250, "250 ms", 250},
      {FXParamDef::Range{0, 100, ""}, 80, "80", 80},
      {FXParamDef::Range{-20, 20, "dB"}, -7, "-7 dB", -7},
      {FXParamDef::Range{-20, 20, "dB"}, -21, "-21 dB", -20},
      {FXParamDef::Range{0, 100, ""}, std::int64_t{1} << 40, "1099511627776", 100},
      {FXParamDef::Raw{0, 127, "700 Hz–FLAT"}, 200, "200", 127},
      {FXParamDef::Options{three}, 2, "2", 2},
      {FXParamDef::Options{three}, 9, "9", 2},
      {FXParamDef::Options{three}, -1, "-1", 0},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(fxValueText(row.kind, row.value).toStdString(), row.text);
    EXPECT_EQ(fxPosition(row.kind, row.value), row.position) << row.text;
  }
}

class KitEffects : public ::testing::Test {
 protected:
  TestStore store;
  KitEffectsView view{store.library};

  KitEffects() {
    store.open();
    view.setKit(rock);
    view.findChild<DisclosureGroup*>(QStringLiteral("effects"))->setExpanded(true);
    view.resize(528, 600);
    view.show();
    settle();
  }
  template<class Control>
  Control& find(const std::string& name) {
    auto* found = view.findChild<Control*>(QString::fromStdString(name));
    if (!found) throw std::runtime_error("no " + name);
    return *found;
  }
  const Kit& kit() { return *store.library.kit(rock); }
  void use(int unit, std::int64_t type) {
    store.library.setFxType(rock, unit, type);
    store.library.setFxSwitch(rock, unit, true);
    settle();
    store.library.undoManager().endTurn();
  }
  qsizetype rowCount() { return view.findChildren<FXParamRow*>().size(); }
  std::string text(const std::string& name) { return find<QLabel>(name).text().toStdString(); }
};

TEST_F(KitEffects, SwitchAndTypeWriteTheirUnit) {
  for (const int unit : {1, 2}) {
    const std::string name = "fx" + std::to_string(unit);
    auto& type = find<QComboBox>(name + "Type");
    EXPECT_FALSE(type.isEnabled());
    QTest::mouseClick(&find<QCheckBox>(name + "Switch"), Qt::LeftButton);
    EXPECT_TRUE(kit().isFxOn(unit));
    EXPECT_FALSE(kit().isFxOn(3 - unit));
    EXPECT_TRUE(type.isEnabled());
    EXPECT_EQ(rowCount(), 0) << "Thru has no parameters";
    type.setCurrentIndex(20);
    Q_EMIT type.activated(20);
    EXPECT_EQ(kit().fxType(unit), 20);
    EXPECT_EQ(rowCount(), 4);
    QTest::mouseClick(&find<QCheckBox>(name + "Switch"), Qt::LeftButton);
    settle();
    EXPECT_FALSE(kit().isFxOn(unit));
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(type.currentText(), QStringLiteral("Slicer")) << "an effect that is off keeps its type in sight";
  }
}

TEST_F(KitEffects, EachParameterOfEachTypeWritesItsLeaf) {
  for (std::size_t type = 0; type < fxTypes.size(); ++type) {
    const int unit = type % 2 == 0 ? 1 : 2;
    use(unit, static_cast<std::int64_t>(type));
    const std::string unitName = "fx" + std::to_string(unit) + "Param";
    for (int position = 0; const FXParamDef& param : fxTypes[type].params) {
      const std::string name = unitName + std::to_string(position);
      std::int64_t wanted = 0;
      if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
        auto& menu = find<QComboBox>(name + "Menu");
        ASSERT_EQ(menu.count(), std::ssize(options->texts));
        wanted = menu.count() - 1;
        menu.setCurrentIndex(menu.count() - 1);
        Q_EMIT menu.activated(menu.count() - 1);
      } else {
        auto& slider = find<QSlider>(name + "Slider");
        QTest::keyClick(&slider, slider.value() == slider.minimum() ? Qt::Key_End : Qt::Key_Home);
        wanted = slider.value();
        EXPECT_TRUE(wanted == slider.minimum() || wanted == slider.maximum());
      }
      EXPECT_EQ(kit().fxParam(unit, position), wanted) << fxTypes[type].name << " " << param.name;
      ++position;
    }
    store.library.setFxSwitch(rock, unit, false);
    settle();
  }
}

TEST_F(KitEffects, EachMovementIsOneUndoStep) {
  const EventTurns turns(store.library.undoManager());
  use(1, 9);  // "EQ", whose gains go below zero
  auto& slider = find<QSlider>("fx1Param1Slider");
  EXPECT_EQ(slider.minimum(), -20);
  for (int step = 0; step < 3; ++step)
    QTest::keyClick(&slider, Qt::Key_Left);
  EXPECT_EQ(kit().fxParam(1, 1), -3);
  EXPECT_EQ(text("fx1Param1Value"), "-3 dB");
  store.library.undoManager().undo();
  settle();
  EXPECT_EQ(kit().fxParam(1, 1), -2);
  EXPECT_EQ(slider.value(), -2);
  EXPECT_EQ(text("fx1Param1Value"), "-2 dB");
}

TEST_F(KitEffects, StoredValuesOutsideTheirRangeAreShownAndKept) {
  use(1, 1);
  for (const int position : {0, 1, 4})
    store.library.setFxParam(rock, 1, position, 5000);
  settle();
  EXPECT_EQ(find<QComboBox>("fx1Param0Menu").currentText(), QStringLiteral("Pan"));
  EXPECT_EQ(find<QSlider>("fx1Param1Slider").value(), 1300);
  EXPECT_EQ(text("fx1Param1Value"), "5000 ms");
  EXPECT_EQ(text("fx1Param4Value"), "5000");
  EXPECT_EQ(text("fx1Param4Caption"), "FLAT–800 Hz");
  for (const int position : {0, 1, 4})
    EXPECT_EQ(kit().fxParam(1, position), 5000);
  store.library.setFxType(rock, 1, 50);
  settle();
  EXPECT_EQ(find<QComboBox>("fx1Type").currentIndex(), -1);
  EXPECT_EQ(rowCount(), 0);
  EXPECT_EQ(kit().fxType(1), 50);
}

TEST_F(KitEffects, ShowingKitsChangesNothingAndClosesTheGroup) {
  auto& group = find<DisclosureGroup>("effects");
  view.setKit(rock);
  EXPECT_TRUE(group.isExpanded());
  for (const Slot slot : {Slot{2}, Slot{4}, Slot{99}, rock}) {
    view.setKit(slot);
    EXPECT_FALSE(group.isExpanded()) << slot;
    group.setExpanded(true);
    settle();
  }
  EXPECT_FALSE(store.library.hasUnsavedChanges());
}

TEST_F(KitEffects, SlidersOfOneEffectEndTogetherAndTabGoesFromUnitToUnit) {
  use(1, 1);
  use(2, 19);
  for (const std::string unit : {"fx1", "fx2"}) {
    std::set<int> ends;
    for (const QSlider* slider : view.findChildren<QSlider*>())
      if (slider->objectName().startsWith(QString::fromStdString(unit)))
        ends.insert(slider->mapTo(&view, QPoint(slider->width(), 0)).x());
    EXPECT_EQ(ends.size(), 1U) << unit;
  }
  const QWidget* before = &find<QComboBox>("fx1Param0Menu");
  for (const char* name : {"fx1Param1Slider", "fx1Param2Slider"}) {
    const QWidget* next = before->nextInFocusChain();
    while (next->focusPolicy() == Qt::NoFocus)
      next = next->nextInFocusChain();
    EXPECT_EQ(next->objectName().toStdString(), name);
    before = next;
  }
  before = &find<QSlider>("fx1Param7Slider");
  const QWidget* next = before->nextInFocusChain();
  while (next->focusPolicy() == Qt::NoFocus)
    next = next->nextInFocusChain();
  EXPECT_EQ(next->objectName().toStdString(), "fx2Switch");
}

}  // namespace
}  // namespace tamboro::test
