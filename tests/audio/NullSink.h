#pragma once

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QByteArray>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
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
    while (!list.hasEnded())
      lines += list.read();
    return list.end() == 0 ? static_cast<int>(lines.count('\n')) : -1;
  }

 private:
  QString socket() const { return folder_.filePath(QStringLiteral("pulse.sock")); }

  QTemporaryDir folder_;
  std::optional<Child> server_;
};

inline bool isHeard(float value) {
  return value != 0;
}

/// What the null sink plays, from the start of the recording on.
class MonitorRecording {
 public:
  MonitorRecording() {
    waitUntil([this] {
      listen();
      return !bytes_.isEmpty();
    });
  }

  /// To be called all the time: the recorder rests while nobody takes what it has.
  void listen() {
    for (QByteArray part = recorder_.read(); !part.isEmpty(); part = recorder_.read())
      bytes_ += part;
  }

  /// Left and right interleaved, without the silence before and behind. The sounds of the tests hold no silent value.
  std::vector<float> sound() {
    listen();
    std::vector<float> values;
    for (qsizetype at = 0; at + 1 < bytes_.size(); at += 2)
      values.push_back(qFromLittleEndian<std::int16_t>(bytes_.constData() + at) / 32768.0F);
    const auto begin = std::find_if(values.begin(), values.end(), isHeard);
    return {begin, std::find_if(values.rbegin(), std::make_reverse_iterator(begin), isHeard).base()};
  }

 private:
  Child recorder_{"parec --raw --latency-msec=20 -d null.monitor --format=s16le --rate=44100 --channels=2"};
  QByteArray bytes_;
};

}  // namespace tamboro::test
