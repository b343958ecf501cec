#include "model/FXTypeDef.h"

#include <gtest/gtest.h>

#include <string>

#include "model/Kit.h"
#include "model/Trees.h"

namespace tamboro {
namespace {

// The instrument's effects, as its owner reads them. An indented line goes on with the one before.
constexpr std::string_view catalogue = R"(
Thru
Stereo Delay; Type: Normal|Pan; Time: 0..1300 ms; Tap Time: 0..100 %; Feedback: 0..99 %; Low Cut: 0..127, FLAT–800 Hz;
  High Cut: 0..127, 700 Hz–FLAT; Effect Level: 0..100; Direct Level: 0..100
Sync Delay; Type: Normal|Pan; Time (tempo): 0..127, Note-synced delay time; Tap Time: 0..100 %; Feedback: 0..99 %; Low
  Cut: 0..127, FLAT–800 Hz; High Cut: 0..127, 700 Hz–FLAT; Effect Level: 0..100; Direct Level: 0..100
Tape Echo; Mode: S|M|L|S+M|S+L|M+L|S+M+L; Repeat Rate: 0..127; Intensity: 0..127; Bass: -15..15 dB; Treble: -15..15
  dB; Head S Pan: 0..127, L64–CENTER–R63; Head M Pan: 0..127, L64–CENTER–R63; Head L Pan: 0..127, L64–CENTER–R63; Tape
  Dist: 0..5; W/F Rate: 0..127; W/F Depth: 0..127; Echo Level: 0..100; Direct Level: 0..100; Level: 0..100
Chorus; Mode: Mono|Stereo 1|Stereo 2; Rate: 0..100; Depth: 0..100; Pre Delay: 0..127, 0.0–40.0 ms; Low Cut: 0..127,
  FLAT–800 Hz; High Cut: 0..127, 700 Hz–FLAT; Effect Level: 0..100; Direct Level: 0..100
Flanger; Rate Sync: Off|On; Rate: 0..100; Depth: 0..100; Manual: 0..100; Resonance: 0..100; Separation: 0..100; Low
  Cut: 0..127, FLAT–800 Hz; Effect Level: 0..100; Direct Level: 0..100
Step Flanger; Rate Sync: Off|On; Rate: 0..100; Step Sync: Off|On; Step Rate: 0..100; Depth: 0..100; Manual: 0..100;
  Resonance: 0..100; Separation: 0..100; Low Cut: 0..127, FLAT–800 Hz; Effect Level: 0..100; Direct Level: 0..100
Phaser; Type: 4 Stage|8 Stage|12 Stage; Rate Sync: Off|On; Rate: 0..100; Depth: 0..100; Manual: 0..100; Resonance:
  0..100; Separation: 0..100; Effect Level: 0..100; Direct Level: 0..100
Step Phaser; Type: 4 Stage|8 Stage|12 Stage; Rate Sync: Off|On; Rate: 0..100; Step Sync: Off|On; Step Rate: 0..100;
  Depth: 0..100; Manual: 0..100; Resonance: 0..100; Separation: 0..100; Effect Level: 0..100; Direct Level: 0..100
EQ; Low Cut Freq: 0..127, FLAT–800 Hz; Low Gain: -20..20 dB; PKG1 Freq: 0..127, 20.0 Hz–10.0 kHz; PKG1 Q:
  0.5|1|2|4|8|16; PKG1 Gain: -20..20 dB; PKG2 Freq: 0..127, 20.0 Hz–10.0 kHz; PKG2 Q: 0.5|1|2|4|8|16; PKG2 Gain:
  -20..20 dB; Hi Gain: -20..20 dB; Hi Cut Freq: 0..127, 700 Hz–FLAT; Level: -20..20 dB
Compressor; Threshold: -48..0 dB; Attack: 0..100; Release: 0..99; Ratio: 0..127, 2:1–100:1; Knee: Soft|Hard; Make Up:
  0..24 dB
Filter; Type: Low Pass|Band Pass|High Pass; Cutoff: 0..127; Resonance: 0..127; Slope: -12 dB|-24 dB|-36 dB; Rate Sync:
  Off|On; Mod Rate: 0..100; LFO Wave: Triangle|Sine|Saw|Square; Mod Depth: 0..100
Filter + Drive; Cutoff: 0..127; Resonance: 0..127; Drive: 0..127; Level: 0..100
Isolator; Low: -60..4 dB; Mid: -60..4 dB; High: -60..4 dB; Level: 0..100
Touch Wah; Mode: LPF|BPF; Polarity: Down|Up; Sens: 0..100; Frequency: 0..100; Peak: 0..100; Effect Level: 0..100;
  Direct Level: 0..100
Distortion; Type: Mid Boost|Clean Boost|Treble Bst|Blues OD|Crunch|Natural OD|OD-1|T-Scream|Turbo OD|Warm
  OD|Distortion|Mild DS|Mid DS|RAT|Guv DS|DST+|Modern DS|Solid DS|Stack|Loud|Metal Zone|Lead|'60s Fuzz|Oct Fuzz|Muff
  Fuzz; Drive: 0..120; Bottom: -50..50; Tone: -50..50; Effect Level: 0..100; Balance: 0..127, D100:0W–D0:100W
Ring Modulator; Frequency: 0..127; Sens: 0..127; Polarity: Up|Down; Low Gain: -15..15 dB; High Gain: -15..15 dB;
  Balance: 0..127, D100:0W–D0:100W; Level: 0..100
Pitch Shifter; Pitch: -24..24 semitones; Fine: -50..50; Feedback: 0..100 %; Effect Level: 0..100; Direct Level: 0..100
Vibrato; Rate: 0..100; Depth: 0..100
Reverb; Type: Ambience|Room|Hall 1|Hall 2|Plate; Reverb Time: 0..99; Pre Delay: 0..100; Low Cut: 0..127, FLAT–800 Hz;
  High Cut: 0..127, 700 Hz–FLAT; Density: 0..10; Effect Level: 0..100; Direct Level: 0..100; Gbl Rev Lvl: 0..100
Slicer; Pattern: 0..15; Rate Sync: Off|On; Rate: 0..100; Attack: 0..127
)";

std::string told(const FXParamDef& param) {
  std::string text = "; " + std::string(param.name) + ":";
  const auto bounds = [&](const auto& kind) { return std::to_string(kind.lower) + ".." + std::to_string(kind.upper); };
  if (const auto* options = std::get_if<FXParamDef::Options>(&param.kind)) {
    for (const std::string_view option : options->texts)
      text.append(text.ends_with(':') ? " " : "|").append(option);
  } else if (const auto* range = std::get_if<FXParamDef::Range>(&param.kind)) {
    text.append(" " + bounds(*range)).append(range->unit.empty() ? "" : " ").append(range->unit);
  } else {
    const auto& raw = std::get<FXParamDef::Raw>(param.kind);
    text.append(" " + bounds(raw) + ", ").append(raw.caption);
  }
  return text;
}

TEST(FXTypeDef, TheCatalogueIsTheInstruments) {
  std::string expected(catalogue);
  for (std::size_t at = 0; (at = expected.find("\n  ", at)) != std::string::npos;)
    expected.replace(at, 3, " ");
  std::string actual = "\n";
  for (const FXTypeDef& type : fxTypes) {
    actual += type.name;
    for (const FXParamDef& param : type.params)
      actual += told(param);
    actual += "\n";
  }
  EXPECT_EQ(actual, expected);
}

TEST(FXTypeDef, ATypeThatIsNoPositionIsThru) {
  const std::pair<const char*, std::string_view> cases[] = {{"-1", "Thru"}, {"20", "Slicer"}, {"21", "Thru"}};
  for (const auto& [number, name] : cases) {
    const Kit kit{1, tree("<Kit><Fx2Type>" + std::string(number) + "</Fx2Type></Kit>")};
    EXPECT_EQ(fxTypeDef(&kit, 2).name, name) << number;
  }
  EXPECT_EQ(fxTypeDef(nullptr, 1).name, "Thru");
}

}  // namespace
}  // namespace tamboro
