#include "model/FXTypeDef.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "model/Kit.h"
#include "model/Trees.h"

namespace tamboro {
namespace {

TEST(FXTypeDef, TypeOfAUnit) {
  struct {
    const char* leaves;
    int unit;
    std::string_view name;
  } const cases[] = {
      {"<Fx1Type>15</Fx1Type><Fx2Type>20</Fx2Type>", 1, "Distortion"},
      {"<Fx1Type>15</Fx1Type><Fx2Type>20</Fx2Type>", 2, "Slicer"},
      {"<Fx1Type>15</Fx1Type><Fx2Type>20</Fx2Type>", 0, "Slicer"},
      {"<Fx1Type>21</Fx1Type>", 1, "Thru"},
      {"<Fx1Type>-1</Fx1Type>", 1, "Thru"},
      {"<Fx1Type>9223372036854775807</Fx1Type>", 1, "Thru"},
      {"<Fx1Type>x</Fx1Type>", 1, "Thru"},
  };
  for (const auto& [leaves, unit, name] : cases) {
    const Kit kit{1, tree("<Kit>" + std::string(leaves) + "</Kit>")};
    EXPECT_EQ(fxTypeDef(&kit, unit).name, name) << leaves;
  }
  EXPECT_EQ(fxTypeDef(nullptr, 1).name, "Thru");
  EXPECT_TRUE(fxTypes[0].params.empty());
}

TEST(FXTypeDef, TheCatalogueIsWellFormed) {
  std::set<std::string_view> typeNames;
  for (const FXTypeDef& type : fxTypes) {
    EXPECT_TRUE(typeNames.insert(type.name).second) << type.name;
    std::set<std::string_view> paramNames;
    for (const FXParamDef& param : type.params) {
      EXPECT_TRUE(paramNames.insert(param.name).second) << type.name << ": " << param.name;
      if (const auto* range = std::get_if<FXParamDef::Range>(&param.kind)) {
        EXPECT_LT(range->lower, range->upper) << type.name << ": " << param.name;
      }
      if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
        EXPECT_GE(options->texts.size(), 2u) << type.name << ": " << param.name;
      }
    }
  }
}

// Look-alikes that differ between effects.
TEST(FXTypeDef, LookAlikesStayApart) {
  const auto options = [](std::size_t type, std::size_t param) {
    return std::get<FXParamDef::Options>(fxTypes[type].params[param].kind).texts;
  };
  EXPECT_EQ(options(14, 1)[0], "Down");
  EXPECT_EQ(options(16, 2)[0], "Up");
  ASSERT_EQ(options(15, 0).size(), 25u);
  EXPECT_EQ(options(15, 0)[24], "Muff Fuzz");
  EXPECT_EQ(fxTypes[1].params[1].kind, FXParamDef::Kind(FXParamDef::Range{0, 1300, "ms"}));
  EXPECT_EQ(fxTypes[2].params[1].kind, FXParamDef::Kind(FXParamDef::Raw{0, 127, "Note-synced delay time"}));
}

}  // namespace
}  // namespace tamboro
