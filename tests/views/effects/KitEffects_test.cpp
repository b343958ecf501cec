#include <gtest/gtest.h>

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
  const Kit& kit() { return *library.kit(1); }
  qsizetype rowCount() { return window.findChildren<FXParamRow*>().size(); }
};

TEST_F(KitEffects, SwitchAndTypeWriteTheirUnit) {
  for (const std::string unit : {"fx1", "fx2"}) {
    const int number = unit.back() - '0';
    EXPECT_FALSE(find(unit + "Type").isEnabled());
    use(unit + "Switch");
    EXPECT_TRUE(kit().isFxOn(number));
    EXPECT_FALSE(kit().isFxOn(3 - number));
    EXPECT_EQ(rowCount(), 0) << "Thru has no parameters";
    use(unit + "Type", "Slicer");
    EXPECT_EQ(kit().fxType(number), 20);
    EXPECT_EQ(rowCount(), 4);
    use(unit + "Switch");
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(shown(unit + "Type"), q("Slicer")) << "an effect that is off keeps its type";
  }
}

TEST_F(KitEffects, EachParameterOfEachTypeWritesItsLeaf) {
  for (std::size_t type = 0; type < fxTypes.size(); ++type) {
    const int unit = type % 2 == 0 ? 1 : 2;
    library.setFxType(1, unit, static_cast<std::int64_t>(type));
    library.setFxSwitch(1, unit, true);
    settle();
    for (int position = 0; const FXParamDef& param : fxTypes[type].params) {
      const std::string name = "fx" + std::to_string(unit) + "Param" + std::to_string(position);
      std::int64_t wanted = 0;
      if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
        wanted = std::ssize(options->texts) - 1;
        use(name + "Menu", std::string(options->texts.back()).c_str());
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

}  // namespace
}  // namespace tamboro::test
