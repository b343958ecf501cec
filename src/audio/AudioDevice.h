#pragma once

#include <cstddef>
#include <cstdint>

namespace tamboro {

/// The sound device behind SDL. Opening and closing wait for the sound server, without end where that hangs: one thread
/// of its own at a time, and never the main thread.
class AudioDevice {
 public:
  /// Fills `count` frames; called on the device's thread while the device is open.
  using Render = void (*)(void* context, float* frames, std::size_t count);

  AudioDevice(Render render, void* context) : render_(render), context_(context) {}
  AudioDevice(const AudioDevice&) = delete;
  AudioDevice& operator=(const AudioDevice&) = delete;
  ~AudioDevice() { disconnect(); }

  /// False: no sound on this machine.
  bool open();
  /// Gives the device back and stays connected to the server, so that the next opening is a short one.
  void close();
  void disconnect();
  /// The calling thread ends and has used a device: frees what SDL keeps for it, which only knows of its own threads.
  static void leaveThread();
  /// Render's own question: its server or plug went away, and nobody hears what it fills.
  bool isLost() const;

 private:
  bool openDevice();

  Render render_;
  void* context_;
  bool isConnected_ = false;
  std::uint32_t device_ = 0;
};

}  // namespace tamboro
