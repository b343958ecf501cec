// How long a preview takes from the call to its first frame at the sound server, against the plainest SDL player: the
// file read whole, a device of its own, a callback that copies. Both play into a null sink of this program's own.

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "audio/AudioFiles.h"
#include "audio/NullSink.h"
#include "audio/SamplePlayer.h"
#include "audio/Waiting.h"

namespace tamboro {
namespace {

using Clock = std::chrono::steady_clock;
using std::filesystem::path;

constexpr double limit = 1.5;

// Listens at the monitor and notes when a sound begins.
class Ear {
 public:
  Ear() : pipe_(popen("exec parec --raw --latency-msec=2 -d null.monitor --format=s16le --rate=44100", "r")) {
    listener_ = std::thread([this] { listen(); });
  }
  Ear(const Ear&) = delete;
  Ear& operator=(const Ear&) = delete;
  // The server is gone by then, and with it the recorder.
  ~Ear() {
    listener_.join();
    pclose(pipe_);
  }

  double millisecondsUntilHeard(const std::function<void()>& play) {
    heard_ = 0;
    const auto start = Clock::now();
    play();
    if (!test::waitUntil([this] { return heard_ != 0; })) return 1e9;
    return std::chrono::duration<double, std::milli>(Clock::duration(heard_) - start.time_since_epoch()).count();
  }

 private:
  void listen() {
    std::array<std::int16_t, 64> values{};
    while (std::fread(values.data(), sizeof(std::int16_t), values.size(), pipe_) == values.size()) {
      const bool isSilent = std::all_of(values.begin(), values.end(), [](auto value) { return value == 0; });
      if (!isSilent && heard_ == 0) heard_ = Clock::now().time_since_epoch().count();
    }
  }

  FILE* pipe_;
  std::atomic<Clock::rep> heard_ = 1;
  std::thread listener_;
};

class BarePlayer {
 public:
  BarePlayer() = default;
  BarePlayer(const BarePlayer&) = delete;
  BarePlayer& operator=(const BarePlayer&) = delete;
  ~BarePlayer() { close(); }

  void play(const path& file) {
    SDL_AudioSpec request{};
    Uint8* bytes = nullptr;
    Uint32 size = 0;
    if (!SDL_LoadWAV(file.c_str(), &request, &bytes, &size)) std::abort();
    if (device_ == 0) {
      request.samples = 1024;
      request.callback = [](void* player, Uint8* out, int count) {
        static_cast<BarePlayer*>(player)->render(out, static_cast<Uint32>(count));
      };
      request.userdata = this;
      device_ = SDL_OpenAudioDevice(nullptr, 0, &request, nullptr, 0);
    }
    SDL_LockAudioDevice(device_);
    std::swap(bytes_, bytes);
    size_ = size;
    at_ = 0;
    SDL_UnlockAudioDevice(device_);
    SDL_FreeWAV(bytes);
    SDL_PauseAudioDevice(device_, 0);
  }
  void stop() {
    SDL_LockAudioDevice(device_);
    at_ = size_;
    SDL_UnlockAudioDevice(device_);
  }
  void close() {
    if (device_ != 0) SDL_CloseAudioDevice(std::exchange(device_, 0));
    SDL_FreeWAV(std::exchange(bytes_, nullptr));
  }

 private:
  void render(Uint8* out, Uint32 count) {
    const Uint32 part = std::min(count, size_ - at_);
    std::copy_n(bytes_ + at_, part, out);
    std::fill(out + part, out + count, Uint8{0});
    at_ += part;
  }

  SDL_AudioDeviceID device_ = 0;
  Uint8* bytes_ = nullptr;
  Uint32 size_ = 0;
  Uint32 at_ = 0;
};

// Of any length, so that no call keeps step with the device's buffers.
void pause() {
  static std::minstd_rand random(3);
  test::runLoopFor(150 + static_cast<int>(random() % 100));
}

// The lower quartile: other work on the machine only adds to a delay, by tens of milliseconds at times.
double typical(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 4];
}

// One player after the other, so that both meet the same machine.
bool compare(const char* name, int runs, const std::function<double()>& ours, const std::function<double()>& theirs) {
  std::vector<double> our;
  std::vector<double> their;
  for (int i = 0; i < runs; ++i) {
    our.push_back(ours());
    their.push_back(theirs());
  }
  const double ratio = typical(our) / typical(their);
  std::fprintf(stderr, "%s: %.1f ms against %.1f ms\n", name, typical(our), typical(their));
  std::printf("%-24s %8.3f %8.3f\n", name, ratio, limit);
  return ratio <= limit;
}

class Comparison {
 public:
  Comparison() {
    test::writeAudio(sample_, test::noise(44100));
    test::writeAudio(long_, test::noise(600 * 48'000), 2, 48'000, SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  }

  bool run() {
    bool kept = compare(
        "first_sound_ever", 41, [this] { return ourFirst(); }, [this] { return theirFirst(); });
    SDL_InitSubSystem(SDL_INIT_AUDIO);
    kept &= compare(
        "first_sound_after_idle", 15, [this] { return ourAfterIdle(); }, [this] { return theirAfterIdle(); });
    kept &= compare(
        "next_sound", 41, [this] { return ourNext(sample_); }, [this] { return theirNext(); });
    kept &= compare(
        "next_sound_long_file", 41, [this] { return ourNext(long_); }, [this] { return theirNext(); });
    player_.reset();
    bare_.close();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    return kept;
  }

 private:
  double heard(const path& file, SamplePlayer& player) {
    const double time = ear_.millisecondsUntilHeard([&] { player.play(file, 1); });
    player.stop();
    pause();
    return time;
  }
  double heard(BarePlayer& player) {
    const double time = ear_.millisecondsUntilHeard([&] {
      SDL_InitSubSystem(SDL_INIT_AUDIO);
      player.play(sample_);
    });
    player.stop();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    pause();
    return time;
  }

  double ourFirst() {
    player_ = std::make_unique<SamplePlayer>();
    const double time = heard(sample_, *player_);
    player_.reset();
    return time;
  }
  double theirFirst() {
    // Held while the device is open, as heard() gives its own back.
    const double time = ear_.millisecondsUntilHeard([&] {
      SDL_InitSubSystem(SDL_INIT_AUDIO);
      bare_.play(sample_);
    });
    bare_.close();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    pause();
    return time;
  }
  double ourAfterIdle() {
    if (!player_) {
      player_ = std::make_unique<SamplePlayer>();
      heard(sample_, *player_);
    }
    test::waitUntil([] { return test::NullSink::streamCount() == 0; });
    pause();
    const double time = heard(sample_, *player_);
    test::waitUntil([] { return test::NullSink::streamCount() == 0; });
    pause();
    return time;
  }
  double theirAfterIdle() {
    const double time = heard(bare_);
    bare_.close();
    return time;
  }
  double ourNext(const path& file) {
    player_->play(sample_, 0);
    pause();
    player_->stop();
    pause();
    return heard(file, *player_);
  }
  double theirNext() {
    bare_.play(sample_);
    bare_.stop();
    pause();
    return heard(bare_);
  }

  const QTemporaryDir folder_;
  const path sample_ = folder_.path().toStdString() + "/sample.wav";
  const path long_ = folder_.path().toStdString() + "/long.flac";
  Ear ear_;
  std::unique_ptr<SamplePlayer> player_;
  BarePlayer bare_;
};

int measure() {
  test::NullSink sink;
  if (!sink.start()) {
    std::fprintf(stderr, "pulseaudio doesn't start\n");
    return 2;
  }
  auto comparison = std::make_unique<Comparison>();
  const bool kept = comparison->run();
  sink.stop();
  return kept ? 0 : 1;
}

}  // namespace
}  // namespace tamboro

int main(int argc, char** argv) {
  SDL_SetMainReady();
  const QCoreApplication application(argc, argv);
  return tamboro::measure();
}
