#include "make_card/CardMaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "card/SpdDocument.h"
#include "model/FXTypeDef.h"
#include "model/Kit.h"
#include "model/TagList.h"
#include "model/Wave.h"

namespace tamboro {
namespace {

using Files = std::map<std::string, std::string>;

Files made(const CardOptions& options) {
  Files files;
  makeCard(options, [&](const std::string& path, std::string_view bytes) {
    EXPECT_TRUE(files.emplace(path, bytes).second) << path << " was made twice";
  });
  return files;
}

std::size_t countBelow(const Files& files, std::string_view folder) {
  std::size_t count = 0;
  for (const auto& [path, bytes] : files) {
    count += path.starts_with(folder) ? 1U : 0U;
  }
  return count;
}

SpdNode root(const Files& files, const std::string& path) {
  return SpdDocument::parse(files.at(path)).root;
}

TEST(CardMaker, EveryParameterFileParsesAndComesOutAsItWentIn) {
  for (const LineEnds lineEnds : {LineEnds::lf, LineEnds::crlf, LineEnds::mixed}) {
    CardOptions options;
    options.lineEnds = lineEnds;
    options.audio = Audio::none;
    std::size_t parsed = 0;
    for (const auto& [path, bytes] : made(options)) {
      if (path.ends_with(".spd")) {
        EXPECT_EQ(SpdDocument::parse(bytes).serialize(), bytes) << path;
        EXPECT_EQ(bytes.find("\r\n") == std::string::npos, lineEnds == LineEnds::lf) << path;
        ++parsed;
      }
    }
    EXPECT_EQ(parsed, 12U + 44U + 5U);
  }
}

TEST(CardMaker, MakesAsManyAsAsked) {
  struct Case {
    int kits;
    int samples;
    int tags;
    const char* firstKit;
    const char* lastKit;
    const char* lastSample;
  };
  const Case cases[] = {{0, 0, 0, "", "", ""},
                        {1, 1, 1, "KIT/kit001.spd", "KIT/kit001.spd", "WAVE/PRM/02/00.spd"},
                        {40, 300, 20, "KIT/kit001.spd", "KIT/kit040.spd", "WAVE/PRM/03/74.spd"},
                        {1000, 10000, 30, "KIT/kit000.spd", "KIT/kit999.spd", "WAVE/PRM/99/99.spd"}};
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.kits);
    CardOptions options;
    options.kits = expected.kits;
    options.samples = expected.samples;
    options.tags = expected.tags;
    options.audio = Audio::tiny;
    const Files files = made(options);
    EXPECT_EQ(countBelow(files, "KIT/"), static_cast<std::size_t>(expected.kits));
    EXPECT_EQ(countBelow(files, "WAVE/PRM/"), static_cast<std::size_t>(expected.samples));
    EXPECT_EQ(countBelow(files, "WAVE/DATA/"), static_cast<std::size_t>(expected.samples));
    EXPECT_EQ(root(files, "SYSTEM/tag_list.spd").childCount("TagPrm"), static_cast<std::size_t>(expected.tags));
    EXPECT_EQ(root(files, "SYSTEM/wavelist_name.spd").childCount("Wv"), static_cast<std::size_t>(expected.samples));
    for (const char* path : {expected.firstKit, expected.lastKit, expected.lastSample}) {
      EXPECT_TRUE(*path == '\0' || files.contains(path)) << path;
    }
  }
}

TEST(CardMaker, SameSeedSameBytesOtherSeedOtherCard) {
  CardOptions options;
  const Files first = made(options);
  EXPECT_EQ(made(options), first);
  options.seed = 2;
  EXPECT_NE(made(options).at("KIT/kit001.spd"), first.at("KIT/kit001.spd"));
}

void expectFxInRange(const SpdNode& kit, int unit) {
  const std::int64_t type = elements::fxType(unit).read(kit);
  ASSERT_GE(type, 1);
  ASSERT_LT(type, std::ssize(fxTypes));
  const auto params = fxTypes.at(static_cast<std::size_t>(type)).params;
  for (std::size_t n = 0; n < params.size(); ++n) {
    const std::int64_t value = kit.intValue(elements::fxParam(unit, static_cast<int>(n)), -1000);
    if (const auto* options = std::get_if<FXParamDef::Options>(&params[n].kind)) {
      EXPECT_THAT(value, testing::AllOf(testing::Ge(0), testing::Lt(std::ssize(options->texts)))) << params[n].name;
    } else if (const auto* range = std::get_if<FXParamDef::Range>(&params[n].kind)) {
      EXPECT_THAT(value, testing::AllOf(testing::Ge(range->lower), testing::Le(range->upper))) << params[n].name;
    }
  }
}

TEST(CardMaker, KitsNameSamplesThatExistAndEffectsInRange) {
  const Files files = made(CardOptions{});
  std::set<std::int64_t> firstSounds;
  for (const auto& [path, bytes] : files) {
    if (!path.starts_with("KIT/")) continue;
    SCOPED_TRACE(path);
    const Kit kit{.slot = 1, .node = SpdDocument::parse(bytes).root, .isDirty = false};
    ASSERT_EQ(kit.node.childCount("PadPrm"), 15U);
    for (const Pad& pad : kit.pads()) {
      const std::int64_t id = pad.node.intValue("Wv", -2);
      const std::string file = bankFolder(id / 100) + "/" + bankFolder(id % 100) + ".spd";
      EXPECT_TRUE(id == -1 || files.contains("WAVE/PRM/" + file)) << id;
    }
    firstSounds.insert(kit.pads().front().node.intValue("Wv", -2));
    expectFxInRange(kit.node, 1);
    expectFxInRange(kit.node, 2);
  }
  EXPECT_GT(firstSounds.size(), 1U);
  EXPECT_NE(root(files, "KIT/kit001.spd").child("PadPrm")->intValue("Wv", -2),
            root(files, "KIT/kit002.spd").child("PadPrm")->intValue("Wv", -2));
}

TEST(CardMaker, AudioLiesWhereThePathSaysAndIsNotSilent) {
  const Files files = made(CardOptions{});
  int stereo = 0;
  int measured = 0;
  for (const auto& [path, bytes] : files) {
    if (!path.starts_with("WAVE/PRM/")) continue;
    SCOPED_TRACE(path);
    const SpdNode node = SpdDocument::parse(bytes).root;
    const std::string& wav = files.at("WAVE/DATA/" + std::string(node.child("Path")->text()));
    const auto channels = static_cast<std::int64_t>(wav.at(22));
    EXPECT_EQ(std::ssize(wav), 44 + node.intValue("End", 0) * channels * 2);
    int loudest = 0;
    for (std::size_t at = 45; at < wav.size(); at += 2) {
      loudest = std::max(loudest, std::abs(static_cast<int>(static_cast<signed char>(wav[at]))));
    }
    EXPECT_GT(loudest, 20);
    stereo += channels == 2 ? 1 : 0;
    measured += node.child("Measure") != nullptr ? 1 : 0;
  }
  EXPECT_GE(stereo, 10);
  EXPECT_GE(measured, 3);
}

}  // namespace
}  // namespace tamboro
