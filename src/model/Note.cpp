#include "model/Note.h"

#include <algorithm>

#include "model/PadSetting.h"

namespace tamboro {
namespace {

constexpr std::int64_t notesPerOctave = 12;

std::int64_t floorDivided(std::int64_t number) {
  const std::int64_t quotient = number / notesPerOctave;
  return number % notesPerOctave < 0 ? quotient - 1 : quotient;
}

}  // namespace

constexpr std::array<std::string_view, 12> pitchNames = {"C",     "C#/Db", "D",     "D#/Eb", "E",     "F",
                                                         "F#/Gb", "G",     "G#/Ab", "A",     "A#/Bb", "B"};

std::string noteName(std::int64_t number) {
  if (number < padSetting("note").leaf.lower || number > padSetting("note").leaf.upper) return std::to_string(number);
  std::string name(pitchNames[static_cast<std::size_t>(pitchOf(number))]);
  name += std::to_string(octaveOf(number));
  if (number == middleC) name += " (middle C)";
  return name;
}

int pitchOf(std::int64_t number) {
  const std::int64_t remainder = number % notesPerOctave;
  return static_cast<int>(remainder < 0 ? remainder + notesPerOctave : remainder);
}

std::int64_t octaveOf(std::int64_t number) {
  return floorDivided(number) - 1;
}

std::int64_t noteWithPitch(std::int64_t number, int pitch) {
  // An octave beyond these ends where the clamp does, and keeps the product in range.
  const std::int64_t octave = std::clamp<std::int64_t>(floorDivided(number), -1, 11);
  return padSetting("note").leaf.stored(octave * notesPerOctave + pitch);
}

std::int64_t noteWithOctave(std::int64_t number, int octave) {
  return padSetting("note").leaf.stored((std::int64_t{octave} + 1) * notesPerOctave + pitchOf(number));
}

}  // namespace tamboro
