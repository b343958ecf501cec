#pragma once

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QByteArray>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audio/Waiting.h"

namespace tamboro::test {

/// A child process and what it prints, ended with this object or this process. (Not QProcess: the thread sanitizer
/// doesn't survive its shared-memory fork.)
class Child {
 public:
  explicit Child(const std::string& command)
      : output_(popen(("echo $$; exec setpriv --pdeathsig TERM " + command + " 2>/dev/null").c_str(), "r")) {
    char line[32] = "";
    // Byte by byte, so that no output goes into a buffer behind the line.
    for (std::size_t i = 0; i + 1 < sizeof line && ::read(descriptor(), line + i, 1) == 1 && line[i] != '\n'; ++i) {
    }
    pid_ = std::stoi(line);
    ::fcntl(descriptor(), F_SETFL, O_NONBLOCK);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() { end(); }

  /// Returns the exit status.
  int end() {
    if (output_ && !hasEnded()) signal(SIGTERM);
    return output_ ? pclose(std::exchange(output_, nullptr)) : -1;
  }
  /// What was printed since the last call.
  QByteArray read() {
    QByteArray bytes(1 << 16, 0);
    const auto count = ::read(descriptor(), bytes.data(), static_cast<std::size_t>(bytes.size()));
    hasEnded_ = count == 0;
    bytes.truncate(std::max<qsizetype>(count, 0));
    return bytes;
  }
  void signal(int number) const { ::kill(pid_, number); }
  /// Its output is closed.
  bool hasEnded() const { return hasEnded_; }

 private:
  int descriptor() const { return fileno(output_); }

  FILE* output_;
  int pid_ = 0;
  bool hasEnded_ = false;
};

/// A sound server of the test's own with one output, which nobody hears and a monitor records: 44.1 kHz, stereo, 16
/// bit. While it lives, the sounds of this process go there.
class NullSink {
 public:
  NullSink() {
    qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    qputenv("PULSE_SERVER", "unix:" + socket().toUtf8());
    qputenv("PULSE_COOKIE", folder_.filePath(QStringLiteral("cookie")).toUtf8());
    qputenv("SDL_AUDIODRIVER", "pulseaudio");
  }
  NullSink(const NullSink&) = delete;
  NullSink& operator=(const NullSink&) = delete;

  /// False: there is no sound server on this machine, or it doesn't start.
  bool start() {
    server_.emplace(
        "pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1"
        " -L 'module-null-sink sink_name=null rate=44100 channels=2'"
        " -L 'module-native-protocol-unix auth-anonymous=1 socket=" +
        socket().toStdString() + "'");
    return waitUntil([this] {
             server_->read();
             return server_->hasEnded() || QFileInfo::exists(socket());
           }) &&
           !server_->hasEnded();
  }

  void stop() {
    server_.reset();
    QFile::remove(socket());
  }

  /// It is there and answers nobody, until it is told to go on.
  void hang() { server_->signal(SIGSTOP); }
  void goOn() { server_->signal(SIGCONT); }

  /// How many streams play into it; -1: it doesn't answer.
  static int streamCount() {
    Child list("pactl list short sink-inputs");
    QByteArray lines;
    while (!list.hasEnded()) {
      lines += list.read();
    }
    return list.end() == 0 ? static_cast<int>(lines.count('\n')) : -1;
  }

 private:
  QString socket() const { return folder_.filePath(QStringLiteral("pulse.sock")); }

  QTemporaryDir folder_;
  std::optional<Child> server_;
};

/// What the null sink plays, from the start of the recording on.
class MonitorRecording {
 public:
  MonitorRecording() {
    waitUntil([this] { return !samples().empty(); });
  }
  MonitorRecording(const MonitorRecording&) = delete;
  MonitorRecording& operator=(const MonitorRecording&) = delete;

  /// To be called all the time: the recorder rests while nobody takes what it has.
  void listen() {
    for (QByteArray part = recorder_.read(); !part.isEmpty(); part = recorder_.read()) {
      bytes_ += part;
    }
  }

  /// Left and right interleaved.
  std::vector<std::int16_t> samples() {
    listen();
    std::vector<std::int16_t> values(static_cast<std::size_t>(bytes_.size()) / sizeof(std::int16_t));
    if (!values.empty()) std::memcpy(values.data(), bytes_.constData(), values.size() * sizeof(std::int16_t));
    return values;
  }

  /// Without the silence before and behind.
  std::vector<std::int16_t> sound() {
    auto values = samples();
    const auto isFrameSilent = [&](std::size_t i) { return values[i] == 0 && values[i + 1] == 0; };
    std::size_t begin = 0;
    std::size_t end = values.size() / 2 * 2;
    while (begin < end && isFrameSilent(begin))
      begin += 2;
    while (end > begin && isFrameSilent(end - 2))
      end -= 2;
    return {values.begin() + static_cast<std::ptrdiff_t>(begin), values.begin() + static_cast<std::ptrdiff_t>(end)};
  }

 private:
  Child recorder_{"parec --raw --latency-msec=20 -d null.monitor --format=s16le --rate=44100 --channels=2"};
  QByteArray bytes_;
};

}  // namespace tamboro::test
