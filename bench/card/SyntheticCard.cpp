#include "card/SyntheticCard.h"

#include <array>
#include <random>
#include <string_view>

namespace tamboro::bench {

namespace {

/// Writes one file's text by hand: what is measured here must not have made its own input.
class FileText {
 public:
  void leaf(std::string_view name, const std::string& value) {
    line().append(1, '<').append(name).append(1, '>').append(value).append("</").append(name).append(1, '>');
  }
  void leaf(const std::string& name, unsigned value) { leaf(name, std::to_string(value)); }

  void cells(const std::string& prefix, std::size_t width, const std::string& text) {
    for (std::size_t i = 0; i < width; ++i)
      leaf(prefix + std::to_string(i), i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  }

  void open(std::string_view name) {
    if (!text_.empty()) line();
    text_.append(1, '<').append(name).append(1, '>');
    ++depth_;
  }
  void close(std::string_view name) {
    --depth_;
    line().append("</").append(name).append(1, '>');
  }
  std::string finish() { return text_ + "\r\n"; }

 private:
  std::string& line() { return text_.append("\r\n").append(depth_, '\t'); }

  std::string text_;
  std::size_t depth_ = 0;
};

class Random {
 public:
  unsigned below(unsigned bound) { return static_cast<unsigned>(engine_() % bound); }

 private:
  std::mt19937 engine_{20};
};

std::string kitFile(Random& random) {
  constexpr auto padLeaves = std::to_array<std::string_view>(
      {"WvLevel",  "WvPan",   "SubWvLevel", "SubWvPan", "NoteNum",   "MuteGrp",  "VoiceAsgn",
       "TrigType", "OutAsgn", "PadMidiCh",  "Loop",     "TempoSync", "Dynamics", "Reverse",
       "PlayMode", "SubNote", "GateTime",   "FadeIn",   "FadeOut",   "Pitch"});
  FileText file;
  file.open("KitPrm");
  file.cells("Nm", 8, "Kit " + std::to_string(random.below(1000)));
  file.cells("SubNm", 16, "made of numbers");
  file.leaf("Level", 100);
  file.leaf("Tempo", 600 + random.below(1400));
  for (const std::string unit : {"Fx1", "Fx2"}) {
    file.leaf(unit + "Sw", random.below(2));
    file.leaf(unit + "Type", random.below(21));
    for (unsigned i = 0; i < 20; ++i)
      file.leaf(unit + "Prm" + std::to_string(i), random.below(128));
  }
  for (int pad = 0; pad < 15; ++pad) {
    file.open("PadPrm");
    file.leaf("Wv", 200 + random.below(9800));
    file.leaf("SubWv", "-1");
    for (const std::string_view name : padLeaves)
      file.leaf(std::string(name), random.below(128));
    for (unsigned i = 0; i < 18; ++i)
      file.leaf("Ctrl" + std::to_string(i), random.below(128));
    file.close("PadPrm");
  }
  file.close("KitPrm");
  return file.finish();
}

std::string sampleFile(Random& random, int number) {
  FileText file;
  file.open("WvPrm");
  file.cells("Nm", 12, "Smp" + std::to_string(number) + std::string(random.below(4), 'x'));
  file.leaf("Tag", random.below(20));
  file.leaf("Tempo", 600 + random.below(1400));
  file.leaf("Beat", 4);
  file.leaf("Measure", random.below(9));
  file.leaf("Start", 0);
  file.leaf("End", random.below(1'000'000));
  file.leaf("Path", std::to_string(10 + number / 1000) + "/sample " + std::to_string(number) + ".wav");
  file.close("WvPrm");
  return file.finish();
}

}  // namespace

SyntheticCard::SyntheticCard(int kitCount, int sampleCount) {
  Random random;
  for (int i = 0; i < kitCount; ++i)
    kits.push_back(kitFile(random));
  for (int i = 0; i < sampleCount; ++i)
    samples.push_back(sampleFile(random, i));
}

}  // namespace tamboro::bench
