#include "model/FXTypeDef.h"

#include "model/Kit.h"

namespace tamboro {
namespace {

using Text = std::string_view;

constexpr FXParamDef range(Text name, std::int64_t lower, std::int64_t upper, Text unit = {}) {
  return {name, FXParamDef::Range{lower, upper, unit}};
}
constexpr FXParamDef options(Text name, std::span<const Text> texts) {
  return {name, FXParamDef::Options{texts}};
}
constexpr FXParamDef raw(Text name, Text caption) {
  return {name, FXParamDef::Raw{0, 127, caption}};
}

constexpr Text delayTypes[] = {"Normal", "Pan"};
constexpr Text echoModes[] = {"S", "M", "L", "S+M", "S+L", "M+L", "S+M+L"};
constexpr Text chorusModes[] = {"Mono", "Stereo 1", "Stereo 2"};
constexpr Text offOn[] = {"Off", "On"};
constexpr Text phaserTypes[] = {"4 Stage", "8 Stage", "12 Stage"};
constexpr Text peakQs[] = {"0.5", "1", "2", "4", "8", "16"};
constexpr Text knees[] = {"Soft", "Hard"};
constexpr Text filterTypes[] = {"Low Pass", "Band Pass", "High Pass"};
constexpr Text slopes[] = {"-12 dB", "-24 dB", "-36 dB"};
constexpr Text lfoWaves[] = {"Triangle", "Sine", "Saw", "Square"};
constexpr Text wahModes[] = {"LPF", "BPF"};
constexpr Text downUp[] = {"Down", "Up"};
constexpr Text upDown[] = {"Up", "Down"};
constexpr Text distortionTypes[] = {"Mid Boost",  "Clean Boost", "Treble Bst", "Blues OD", "Crunch",
                                    "Natural OD", "OD-1",        "T-Scream",   "Turbo OD", "Warm OD",
                                    "Distortion", "Mild DS",     "Mid DS",     "RAT",      "Guv DS",
                                    "DST+",       "Modern DS",   "Solid DS",   "Stack",    "Loud",
                                    "Metal Zone", "Lead",        "'60s Fuzz",  "Oct Fuzz", "Muff Fuzz"};
constexpr Text reverbTypes[] = {"Ambience", "Room", "Hall 1", "Hall 2", "Plate"};

// Rows that several effects have.
constexpr FXParamDef delayType = options("Type", delayTypes);
constexpr FXParamDef tapTime = range("Tap Time", 0, 100, "%");
constexpr FXParamDef delayFeedback = range("Feedback", 0, 99, "%");
constexpr FXParamDef lowCut = raw("Low Cut", "FLAT–800 Hz");
constexpr FXParamDef highCut = raw("High Cut", "700 Hz–FLAT");
constexpr FXParamDef effectLevel = range("Effect Level", 0, 100);
constexpr FXParamDef directLevel = range("Direct Level", 0, 100);
constexpr FXParamDef level = range("Level", 0, 100);
constexpr FXParamDef rateSync = options("Rate Sync", offOn);
constexpr FXParamDef rate = range("Rate", 0, 100);
constexpr FXParamDef stepSync = options("Step Sync", offOn);
constexpr FXParamDef stepRate = range("Step Rate", 0, 100);
constexpr FXParamDef depth = range("Depth", 0, 100);
constexpr FXParamDef manual = range("Manual", 0, 100);
constexpr FXParamDef resonance = range("Resonance", 0, 100);
constexpr FXParamDef filterResonance = range("Resonance", 0, 127);
constexpr FXParamDef separation = range("Separation", 0, 100);
constexpr FXParamDef balance = raw("Balance", "D100:0W–D0:100W");
constexpr Text headPan = "L64–CENTER–R63";
constexpr Text peakFrequency = "20.0 Hz–10.0 kHz";

constexpr FXParamDef stereoDelay[] = {
    delayType, range("Time", 0, 1300, "ms"), tapTime, delayFeedback, lowCut, highCut, effectLevel, directLevel};

constexpr FXParamDef syncDelay[] = {
    delayType,  raw("Time (tempo)", "Note-synced delay time"), tapTime, delayFeedback, lowCut, highCut, effectLevel,
    directLevel};

constexpr FXParamDef tapeEcho[] = {
    options("Mode", echoModes),
    range("Repeat Rate", 0, 127),
    range("Intensity", 0, 127),
    range("Bass", -15, 15, "dB"),
    range("Treble", -15, 15, "dB"),
    raw("Head S Pan", headPan),
    raw("Head M Pan", headPan),
    raw("Head L Pan", headPan),
    range("Tape Dist", 0, 5),
    range("W/F Rate", 0, 127),
    range("W/F Depth", 0, 127),
    range("Echo Level", 0, 100),
    directLevel,
    level,
};

constexpr FXParamDef chorus[] = {options("Mode", chorusModes),
                                 rate,
                                 depth,
                                 raw("Pre Delay", "0.0–40.0 ms"),
                                 lowCut,
                                 highCut,
                                 effectLevel,
                                 directLevel};

constexpr FXParamDef flanger[] = {rateSync,   rate,   depth,       manual,     resonance,
                                  separation, lowCut, effectLevel, directLevel};

constexpr FXParamDef stepFlanger[] = {rateSync,  rate,       stepSync, stepRate,    depth,      manual,
                                      resonance, separation, lowCut,   effectLevel, directLevel};

constexpr FXParamDef phaser[] = {
    options("Type", phaserTypes), rateSync, rate, depth, manual, resonance, separation, effectLevel, directLevel};

constexpr FXParamDef stepPhaser[] = {options("Type", phaserTypes),
                                     rateSync,
                                     rate,
                                     stepSync,
                                     stepRate,
                                     depth,
                                     manual,
                                     resonance,
                                     separation,
                                     effectLevel,
                                     directLevel};

constexpr FXParamDef equalizer[] = {
    raw("Low Cut Freq", "FLAT–800 Hz"), range("Low Gain", -20, 20, "dB"),  raw("PKG1 Freq", peakFrequency),
    options("PKG1 Q", peakQs),          range("PKG1 Gain", -20, 20, "dB"), raw("PKG2 Freq", peakFrequency),
    options("PKG2 Q", peakQs),          range("PKG2 Gain", -20, 20, "dB"), range("Hi Gain", -20, 20, "dB"),
    raw("Hi Cut Freq", "700 Hz–FLAT"),  range("Level", -20, 20, "dB"),
};

constexpr FXParamDef compressor[] = {
    range("Threshold", -48, 0, "dB"), range("Attack", 0, 100), range("Release", 0, 99),
    raw("Ratio", "2:1–100:1"),        options("Knee", knees),  range("Make Up", 0, 24, "dB"),
};

constexpr FXParamDef filter[] = {
    options("Type", filterTypes),
    range("Cutoff", 0, 127),
    filterResonance,
    options("Slope", slopes),
    rateSync,
    range("Mod Rate", 0, 100),
    options("LFO Wave", lfoWaves),
    range("Mod Depth", 0, 100),
};

constexpr FXParamDef filterDrive[] = {range("Cutoff", 0, 127), filterResonance, range("Drive", 0, 127), level};

constexpr FXParamDef isolator[] = {range("Low", -60, 4, "dB"), range("Mid", -60, 4, "dB"), range("High", -60, 4, "dB"),
                                   level};

constexpr FXParamDef touchWah[] = {
    options("Mode", wahModes),
    options("Polarity", downUp),
    range("Sens", 0, 100),
    range("Frequency", 0, 100),
    range("Peak", 0, 100),
    effectLevel,
    directLevel,
};

constexpr FXParamDef distortion[] = {
    options("Type", distortionTypes),
    range("Drive", 0, 120),
    range("Bottom", -50, 50),
    range("Tone", -50, 50),
    effectLevel,
    balance,
};

constexpr FXParamDef ringModulator[] = {
    range("Frequency", 0, 127),
    range("Sens", 0, 127),
    options("Polarity", upDown),
    range("Low Gain", -15, 15, "dB"),
    range("High Gain", -15, 15, "dB"),
    balance,
    level,
};

constexpr FXParamDef pitchShifter[] = {range("Pitch", -24, 24, "semitones"), range("Fine", -50, 50),
                                       range("Feedback", 0, 100, "%"), effectLevel, directLevel};

constexpr FXParamDef vibrato[] = {rate, depth};

constexpr FXParamDef reverb[] = {
    options("Type", reverbTypes),
    range("Reverb Time", 0, 99),
    range("Pre Delay", 0, 100),
    lowCut,
    highCut,
    range("Density", 0, 10),
    effectLevel,
    directLevel,
    range("Gbl Rev Lvl", 0, 100),
};

constexpr FXParamDef slicer[] = {range("Pattern", 0, 15), rateSync, rate, range("Attack", 0, 127)};

}  // namespace

constexpr std::array<FXTypeDef, 21> fxTypes = {{
    {"Thru", {}},
    {"Stereo Delay", stereoDelay},
    {"Sync Delay", syncDelay},
    {"Tape Echo", tapeEcho},
    {"Chorus", chorus},
    {"Flanger", flanger},
    {"Step Flanger", stepFlanger},
    {"Phaser", phaser},
    {"Step Phaser", stepPhaser},
    {"EQ", equalizer},
    {"Compressor", compressor},
    {"Filter", filter},
    {"Filter + Drive", filterDrive},
    {"Isolator", isolator},
    {"Touch Wah", touchWah},
    {"Distortion", distortion},
    {"Ring Modulator", ringModulator},
    {"Pitch Shifter", pitchShifter},
    {"Vibrato", vibrato},
    {"Reverb", reverb},
    {"Slicer", slicer},
}};

const FXTypeDef& fxTypeDef(const Kit* kit, int unit) {
  const std::int64_t type = kit != nullptr ? kit->fxType(unit) : 0;
  const bool isPosition = type >= 0 && type < static_cast<std::int64_t>(fxTypes.size());
  return fxTypes[isPosition ? static_cast<std::size_t>(type) : 0];
}

}  // namespace tamboro
