#include "make_card/CardMaker.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "card/SpdDocument.h"

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

TEST(CardMaker, MakesTheSameWholeCardAgain) {
  for (const LineEnds lineEnds : {LineEnds::lf, LineEnds::crlf, LineEnds::mixed}) {
    CardOptions options;
    options.lineEnds = lineEnds;
    const Files files = made(options);
    EXPECT_EQ(made(options), files);
    for (const auto& [path, bytes] : files) {
      if (!path.ends_with(".spd")) continue;
      const SpdDocument document = SpdDocument::parse(bytes);
      EXPECT_EQ(document.serialize(), bytes) << path;
      const SpdNode* const audio = document.root.child("Path");
      EXPECT_TRUE(audio == nullptr || files.at("WAVE/DATA/" + std::string(audio->text())).size() > 44) << path;
    }
  }
}

}  // namespace
}  // namespace tamboro
