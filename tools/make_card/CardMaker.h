#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "make_card/SpdText.h"

namespace tamboro {

enum class Audio : std::uint8_t { none, tiny, full };

struct CardOptions {
  int kits = 12;     ///< 0...1,000
  int samples = 44;  ///< 0...10,000: two factory banks and 98 of the user's, a hundred each
  int tags = 16;     ///< 0...1,000
  std::uint64_t seed = 1;
  Audio audio = Audio::full;
  LineEnds lineEnds = LineEnds::crlf;
};

/// Takes one file: its path below the card's root, folders divided by "/", and its bytes.
using CardSink = std::function<void(const std::string& path, std::string_view bytes)>;

/// Makes an owner's card: named kits with pads and effects, factory and user samples, the tag list and the three wave
/// lists, and what an instrument writes besides that the program doesn't know. Same options, same bytes. The first two
/// kits have different sounds on their first pad, given two samples.
void makeCard(const CardOptions& options, const CardSink& sink);

}  // namespace tamboro
