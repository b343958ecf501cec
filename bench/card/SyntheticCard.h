#pragma once

#include <string>
#include <vector>

namespace tamboro::bench {

/// The `.spd` files of a made-up card, laid out like the instrument's: CR LF, tabs, names in cells.
struct SyntheticCard {
  std::vector<std::string> kits;
  std::vector<std::string> samples;

  SyntheticCard(int kitCount, int sampleCount);
};

}  // namespace tamboro::bench
