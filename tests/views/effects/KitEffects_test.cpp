#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QSlider>

#include "views/controls/DisclosureGroup.h"
#include "views/effects/FXParamRow.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {
namespace {

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

TEST_F(KitEffects, StoredValuesOutsideTheirRangeAreShownAndKept) {
  use(1, 1);
  for (const int position : {0, 1, 4})
    library.setFxParam(1, 1, position, 5000);
  settle();
  EXPECT_EQ(find<QComboBox>("fx1Param0Menu").currentText(), q("Pan"));
  EXPECT_EQ(text("fx1Param1Value"), "5000 ms");
  EXPECT_EQ(find<QSlider>("fx1Param1Slider").value(), 1300);
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
