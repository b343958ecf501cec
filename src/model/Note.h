#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tamboro {

inline constexpr std::int64_t middleC = 60;

/// The twelve notes of an octave, from C.
extern const std::array<std::string_view, 12> pitchNames;

/// "C#/Db4", and "C4 (middle C)" for 60; the plain number outside 0 to 127.
std::string noteName(std::int64_t number);

/// A note number's two pickers: pitch 0 to 11 and octave, -1 for the notes from 0. Floor division, for any number.
int pitchOf(std::int64_t number);
std::int64_t octaveOf(std::int64_t number);

/// The number with one picker changed, within 0 to 127.
std::int64_t noteWithPitch(std::int64_t number, int pitch);
std::int64_t noteWithOctave(std::int64_t number, int octave);

}  // namespace tamboro
