#pragma once

#include <array>
#include <string_view>

#include "make_card/Sounds.h"

namespace tamboro {

inline constexpr std::array<std::string_view, 16> tagNames{"Kick",       "Snare",   "Hi-Hat", "Tom", "Cymbal", "Clap",
                                                           "Percussion", "Cowbell", "Shaker", "Rim", "Bass",   "Synth",
                                                           "Voice",      "FX Hit",  "Loop",   "Bell"};

// Positions in tagNames.
enum TagPosition : std::uint8_t {
  kick,
  snare,
  hat,
  tom,
  cymbal,
  clap,
  percussion,
  cowbell,
  shaker,
  rim,
  bass,
  synth,
  voice,
  effect,
  loop,
  bell
};

struct SampleRecipe {
  std::string_view name;
  std::string_view audioFile;
  TagPosition tag;
  Tone tone;
};

// What an owner has gathered: the first half came with the instrument, the rest was imported under names of any kind.
inline constexpr std::array<SampleRecipe, 44> sampleTable{{
    {"Kick Deep", "Kick_Deep.wav", kick, {Sound::kick, 0.85}},
    {"Kick Punch", "Kick_Punch.wav", kick, {Sound::kick, 1.2}},
    {"Kick Room", "Kick_Room.wav", kick, {Sound::kick, 1.0, 120, true}},
    {"Snare Tight", "Snare_Tight.wav", snare, {Sound::snare, 1.2}},
    {"Snare Fat", "Snare_Fat.wav", snare, {Sound::snare, 0.8, 120, true}},
    {"Snare Rim", "Snare_Rim.wav", rim, {Sound::rim, 1.0}},
    {"Hat Closed", "Hat_Closed.wav", hat, {Sound::closedHat, 1.0}},
    {"Hat Open", "Hat_Open.wav", hat, {Sound::openHat, 1.0, 120, true}},
    {"Hat Pedal", "Hat_Pedal.wav", hat, {Sound::closedHat, 0.8}},
    {"Tom High", "Tom_High.wav", tom, {Sound::tom, 1.5}},
    {"Tom Mid", "Tom_Mid.wav", tom, {Sound::tom, 1.15}},
    {"Tom Low", "Tom_Low.wav", tom, {Sound::tom, 0.8}},
    {"Crash Dark", "Crash_Dark.wav", cymbal, {Sound::cymbal, 0.8, 120, true}},
    {"Ride", "Ride.wav", cymbal, {Sound::cymbal, 1.3}},
    {"Clap Wide", "Clap_Wide.wav", clap, {Sound::clap, 1.0, 120, true}},
    {"Cowbell", "Cowbell.wav", cowbell, {Sound::cowbell, 1.0}},
    {"Shaker 16th", "Shaker_16th.wav", shaker, {Sound::shaker, 1.0}},
    {"Sticks", "Sticks.wav", percussion, {Sound::rim, 0.7}},
    {"Bell Small", "Bell_Small.wav", bell, {Sound::bell, 1.3}},
    {"Sub Drop", "Sub_Drop.wav", bass, {Sound::bass, 0.9}},
    {"Riser", "Riser.wav", effect, {Sound::riser, 1.0, 120, true}},
    {"Loop Basic", "Loop_Basic.wav", loop, {Sound::loop, 1.0, 120, true}},
    {"Trap Kick", "trap kick (final) v2.wav", kick, {Sound::kick, 0.7}},
    {"808 Long", "808_long_C.wav", bass, {Sound::bass, 0.75}},
    {"Brush Snare", "Brush Snare - Tuesday Session.wav", snare, {Sound::snare, 0.65, 120, true}},
    {"Gated", "SNARE-GATED.WAV", snare, {Sound::snare, 1.0}},
    {"Hat 909 ish", "hat_nineohnine.wav", hat, {Sound::closedHat, 1.25}},
    {"Sizzle", "open hat sizzle.wav", hat, {Sound::openHat, 1.2}},
    {"Floor Tom", "floor tom, felt beater.wav", tom, {Sound::tom, 0.65}},
    {"China", "china.wav", cymbal, {Sound::cymbal, 1.6, 120, true}},
    {"Garage Claps", "claps in the garage.wav", clap, {Sound::clap, 1.0}},
    {"Wood Block", "woodblock.wav", percussion, {Sound::rim, 0.5}},
    {"Agogo", "agogo.wav", percussion, {Sound::cowbell, 1.4}},
    {"Bell Tower", "bell tower.wav", bell, {Sound::bell, 0.5, 120, true}},
    {"Egg Shaker", "egg.wav", shaker, {Sound::shaker, 1.2}},
    {"Vox Chop 01", "vox_chop_01.wav", voice, {Sound::voice, 1.0}},
    {"Vox Chop 02", "vox_chop_02.wav", voice, {Sound::voice, 1.25, 120, true}},
    {"Hey!", "hey.wav", voice, {Sound::voice, 1.6}},
    {"Pluck A", "pluck_a.wav", synth, {Sound::pluck, 1.0}},
    {"Pluck E", "pluck_e.wav", synth, {Sound::pluck, 1.5, 120, true}},
    {"Reverse Swel", "reverse swell, long version for the intro.wav", effect, {Sound::riser, 1.4}},
    {"Loop Bossa", "Loop_Bossa_132.wav", loop, {Sound::loop, 1.1, 132}},
    {"Loop DnB 174", "Loop_DnB_174.wav", loop, {Sound::loop, 1.2, 174, true}},
    {"Loop Slow 80", "slow loop 80bpm.wav", loop, {Sound::loop, 0.8, 80}},
}};

struct KitRecipe {
  std::string_view name;
  std::string_view subtitle;
  int tempo;  // tenths of a beat per minute
};

inline constexpr std::array<KitRecipe, 12> kitTable{{
    {"LiveSet1", "Main set opener", 1200},
    {"LiveSet2", "Second half", 1240},
    {"808 Trap", "Sub bass + hats", 1400},
    {"Bossa", "Cafe Sunday", 1320},
    {"DnB Roll", "", 1740},
    {"Taiko", "Big room stage", 960},
    {"Samba", "Street parade", 1050},
    {"FX Stabs", "Risers and hits", 1285},
    {"ClickTrk", "Rehearsal only", 1000},
    {"Perc Mix", "Congas, shakers!", 1120},
    {"", "", 1200},
    {"Encore", "Do not touch  :)", 1385},
}};

}  // namespace tamboro
