#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QSlider>

#include "platform/EventTurns.h"
#include "views/controls/DisclosureGroup.h"
#include "views/effects/FXParamRow.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

using Kind = FXParamDef::Kind;

TEST(FXParam, NumbersAreShownAsStoredAndControlsAtTheNearestPlace) {
  static constexpr std::string_view three[] = {"a", "b", "c"};
  const struct {
    Kind kind;
    std::int64_t value;
    const char* text;
    int position;
  } cases[] = {
      {FXParamDef::Range{0, 1300, "ms"}, 250, "250 ms", 250},
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

struct KitEffects : ::testing::Test, MainWindow {
  KitEffects() {
    showCard();
    find<DisclosureGroup>("effects").setExpanded(true);
    settle();
  }
  template<class Control = QWidget>
  Control& find(const std::string& name) {
    return MainWindow::find<Control>(name.c_str());
  }
  const Kit& kit() { return *library.kit(1); }
  void choose(const std::string& menu, int row) {
    find<QComboBox>(menu).setCurrentIndex(row);
    Q_EMIT find<QComboBox>(menu).activated(row);
  }
  void use(int unit, std::int64_t type) {
    library.setFxType(1, unit, type);
    library.setFxSwitch(1, unit, true);
    settle();
    library.undoManager().endTurn();
  }
  qsizetype rowCount() { return window.findChildren<FXParamRow*>().size(); }
};

TEST_F(KitEffects, SwitchAndTypeWriteTheirUnit) {
  for (const int unit : {1, 2}) {
    const std::string name = "fx" + std::to_string(unit);
    EXPECT_FALSE(find<QComboBox>(name + "Type").isEnabled());
    find<QCheckBox>(name + "Switch").click();
    EXPECT_TRUE(kit().isFxOn(unit));
    EXPECT_FALSE(kit().isFxOn(3 - unit));
    EXPECT_EQ(rowCount(), 0) << "Thru has no parameters";
    choose(name + "Type", 20);
    EXPECT_EQ(kit().fxType(unit), 20);
    EXPECT_EQ(rowCount(), 4);
    find<QCheckBox>(name + "Switch").click();
    settle();
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(find<QComboBox>(name + "Type").currentText(), q("Slicer")) << "an effect that is off keeps its type";
  }
}

TEST_F(KitEffects, EachParameterOfEachTypeWritesItsLeaf) {
  for (std::size_t type = 0; type < fxTypes.size(); ++type) {
    const int unit = type % 2 == 0 ? 1 : 2;
    use(unit, static_cast<std::int64_t>(type));
    for (int position = 0; const FXParamDef& param : fxTypes[type].params) {
      const std::string name = "fx" + std::to_string(unit) + "Param" + std::to_string(position);
      std::int64_t wanted = 0;
      if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
        wanted = std::ssize(options->texts) - 1;
        choose(name + "Menu", static_cast<int>(wanted));
      } else {
        auto& slider = find<QSlider>(name + "Slider");
        QTest::keyClick(&slider, slider.value() == slider.minimum() ? Qt::Key_End : Qt::Key_Home);
        wanted = slider.value();
      }
      EXPECT_EQ(kit().fxParam(unit, position), wanted) << fxTypes[type].name << " " << param.name;
      ++position;
    }
    library.setFxSwitch(1, unit, false);
    settle();
  }
}

TEST_F(KitEffects, EachMovementIsOneUndoStep) {
  const EventTurns turns(library.undoManager());
  use(1, 9);  // "EQ", whose gains go below zero
  auto& slider = find<QSlider>("fx1Param1Slider");
  for (int step = 0; step < 3; ++step)
    QTest::keyClick(&slider, Qt::Key_Left);
  EXPECT_EQ(text("fx1Param1Value"), "-3 dB");
  library.undoManager().undo();
  settle();
  EXPECT_EQ(kit().fxParam(1, 1), -2);
  EXPECT_EQ(slider.value(), -2);
  EXPECT_EQ(text("fx1Param1Value"), "-2 dB");
}

TEST_F(KitEffects, StoredValuesOutsideTheirRangeAreShownAndKept) {
  use(1, 1);
  for (const int position : {0, 1, 4})
    library.setFxParam(1, 1, position, 5000);
  settle();
  EXPECT_EQ(find<QComboBox>("fx1Param0Menu").currentText(), q("Pan"));
  EXPECT_EQ(text("fx1Param1Value"), "5000 ms");
  EXPECT_EQ(text("fx1Param4Caption"), "FLAT–800 Hz");
  for (const int position : {0, 1, 4})
    EXPECT_EQ(kit().fxParam(1, position), 5000);
  library.setFxType(1, 1, 50);
  settle();
  EXPECT_EQ(find<QComboBox>("fx1Type").currentIndex(), -1);
  EXPECT_EQ(rowCount(), 0);
  EXPECT_EQ(kit().fxType(1), 50);
}

TEST_F(KitEffects, ShowingAnotherKitChangesNothingAndClosesTheGroup) {
  library.setKitLevel(1, 12);
  settle();
  EXPECT_TRUE(find<DisclosureGroup>("effects").isExpanded());
  select(4);
  EXPECT_FALSE(find<DisclosureGroup>("effects").isExpanded());
}

}  // namespace
}  // namespace tamboro::test
