#include "make_card/Sounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tamboro {
namespace {

double wave(double frequency, double t) {
  return std::sin(2 * std::numbers::pi * frequency * t);
}

double square(double frequency, double t) {
  return wave(frequency, t) < 0 ? -1.0 : 1.0;
}

// Exponential decay to a thousandth within `seconds`.
double decay(double t, double seconds) {
  return std::exp(-6.9 * t / seconds);
}

// A sine that falls from `from` to `to` hertz with time constant `fall`: the phase is the integral of the frequency.
double fallingSine(double from, double to, double fall, double t) {
  return wave(1.0, to * t + (from - to) * fall * (1 - std::exp(-t / fall)));
}

// Drums of a metal plate: square waves without a common measure.
double metal(double pitch, double t) {
  constexpr std::array ratios{205.3, 304.4, 369.6, 522.7, 540.0, 800.0};
  double sum = 0;
  for (const double ratio : ratios) {
    sum += square(ratio * pitch, t);
  }
  return sum / ratios.size();
}

// A hand clap: three short bursts and a tail.
double clapEnvelope(double t) {
  constexpr double burst = 0.011;
  return t < 3 * burst ? decay(std::fmod(t, burst), 0.03) : 0.8 * decay(t - 3 * burst, 0.22);
}

double vowel(double pitch, double t) {
  const double glide = 1 + 0.02 * wave(5.5, t);
  double sum = 0;
  for (int harmonic = 1; harmonic <= 12; ++harmonic) {
    const double frequency = 140 * pitch * harmonic;
    const double formant =
        std::exp(-std::pow((frequency - 700) / 250, 2)) + 0.6 * std::exp(-std::pow((frequency - 1200) / 300, 2));
    sum += (0.05 + formant) * wave(frequency * glide, t);
  }
  return 0.45 * sum;
}

struct Voice {
  double seconds;
  double (*at)(double t, double pitch, double noise);
};

// By Sound, without the loop, which is made of them. `noise` is white noise in -1...1.
constexpr std::array<Voice, 15> voices{{
    {0.45,
     [](double t, double p, double n) {
       return fallingSine(180 * p, 48 * p, 0.035, t) * decay(t, 0.42) + 0.25 * n * decay(t, 0.012);
     }},
    {0.30,
     [](double t, double p, double n) {
       return 0.45 * fallingSine(240 * p, 180 * p, 0.02, t) * decay(t, 0.15) + 0.55 * n * decay(t, 0.25);
     }},
    {0.08, [](double t, double p, double n) { return (0.5 * metal(p, t) + 0.5 * n) * decay(t, 0.07); }},
    {0.55, [](double t, double p, double n) { return (0.5 * metal(p, t) + 0.5 * n) * decay(t, 0.55); }},
    {0.50, [](double t, double p,
              double n) { return fallingSine(170 * p, 110 * p, 0.08, t) * decay(t, 0.5) + 0.08 * n * decay(t, 0.05); }},
    {0.28, [](double t, double, double n) { return n * clapEnvelope(t); }},
    {0.06,
     [](double t, double p, double n) { return 0.8 * wave(1700 * p, t) * decay(t, 0.03) + 0.3 * n * decay(t, 0.01); }},
    {0.40, [](double t, double p, double) { return 0.5 * (square(562 * p, t) + square(845 * p, t)) * decay(t, 0.35); }},
    {1.20,
     [](double t, double p, double) {
       return (0.5 * wave(880 * p, t) + 0.3 * wave(2428 * p, t) * decay(t, 0.6) +
               0.2 * wave(4752 * p, t) * decay(t, 0.2)) *
              decay(t, 1.2);
     }},
    {0.12, [](double t, double, double n) { return 0.7 * n * std::min(1.0, t / 0.03) * decay(t, 0.14); }},
    {1.40,
     [](double t, double p, double n) { return (0.4 * metal(1.7 * p, t) + 0.6 * n * decay(t, 0.8)) * decay(t, 1.4); }},
    {0.80, [](double t, double p,
              double) { return (0.7 * wave(55 * p, t) + 0.2 * square(55 * p, t) * decay(t, 0.3)) * decay(t, 1.1); }},
    {0.60, [](double t, double p,
              double) { return (0.6 * wave(330 * p, t) + 0.3 * wave(660 * p, t) * decay(t, 0.25)) * decay(t, 0.6); }},
    {1.50, [](double t, double p,
              double n) { return (0.4 * wave(1.0, 200 * p * t + 300 * p * t * t) + 0.4 * n) * (t / 1.5) * (t / 1.5); }},
    {0.40, [](double t, double p, double) { return vowel(p, t) * std::min(1.0, t / 0.02) * decay(t, 0.7); }},
}};

double at(Sound sound, double t, double pitch, double noise) {
  const Voice& voice = voices.at(static_cast<std::size_t>(sound));
  return t < 0 || t > voice.seconds ? 0.0 : voice.at(t, pitch, noise);
}

// A bar of sixteenths: kick on the beats, snare on two and four, hats between.
double loopAt(double t, const Tone& tone, double noise) {
  const double step = 60.0 / tone.tempo / 4;
  const double inBeat = std::fmod(t, 4 * step);
  const double inTwoBeats = std::fmod(t, 8 * step) - 4 * step;
  return 0.6 * at(Sound::kick, inBeat, tone.pitch, noise) + 0.5 * at(Sound::snare, inTwoBeats, tone.pitch, noise) +
         0.3 * at(Sound::closedHat, std::fmod(t, 2 * step), tone.pitch, noise);
}

void putLittleEndian(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) {
    bytes.push_back(static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU));
  }
}

std::string wavHeader(std::uint32_t dataBytes, std::uint32_t channels) {
  std::string bytes = "RIFF";
  putLittleEndian(bytes, 36 + dataBytes, 4);
  bytes += "WAVEfmt ";
  putLittleEndian(bytes, 16, 4);
  putLittleEndian(bytes, 1, 2);  // PCM
  putLittleEndian(bytes, channels, 2);
  putLittleEndian(bytes, sampleRate, 4);
  putLittleEndian(bytes, sampleRate * channels * 2, 4);
  putLittleEndian(bytes, channels * 2, 2);
  putLittleEndian(bytes, 16, 2);
  bytes += "data";
  putLittleEndian(bytes, dataBytes, 4);
  return bytes;
}

}  // namespace

std::int64_t frameCount(const Tone& tone) {
  const double seconds =
      tone.sound == Sound::loop ? 4 * 60.0 / tone.tempo : voices.at(static_cast<std::size_t>(tone.sound)).seconds;
  return std::llround(seconds * sampleRate);
}

std::string makeWav(const Tone& tone, std::int64_t frames, Random random) {
  const std::uint32_t channels = tone.stereo ? 2 : 1;
  const std::int64_t fade = std::max<std::int64_t>(1, std::min<std::int64_t>(frames, 220));
  std::string bytes = wavHeader(static_cast<std::uint32_t>(frames) * channels * 2, channels);
  for (std::int64_t frame = 0; frame < frames; ++frame) {
    for (std::uint32_t channel = 0; channel < channels; ++channel) {
      // The right channel comes three milliseconds late, which is what makes it wide.
      const double t = static_cast<double>(frame) / sampleRate - 0.003 * channel;
      const double noise = random.noise();
      const double value =
          tone.sound == Sound::loop ? loopAt(std::max(t, 0.0), tone, noise) : at(tone.sound, t, tone.pitch, noise);
      const double faded = value * std::min(1.0, static_cast<double>(frames - frame) / static_cast<double>(fade));
      const auto level = static_cast<std::int32_t>(std::lround(std::clamp(faded, -1.0, 1.0) * 30000));
      putLittleEndian(bytes, static_cast<std::uint32_t>(level) & 0xFFFFU, 2);
    }
  }
  return bytes;
}

}  // namespace tamboro
