#pragma once

#include <QObject>
#include <cstdint>
#include <vector>

#include "library/imports/SoundSource.h"

namespace tamboro {

class RolandLibrary;

/// Hands the sounds of panels and drops to the store's imports and tells once what became of a batch. What waits is
/// given up when the last window closes.
class WaveImports : public QObject {
  Q_OBJECT

 public:
  WaveImports(RolandLibrary& store, QObject* parent);

  /// What is given while a batch runs joins it.
  void start(std::vector<SoundSource> sources, std::int64_t tag);

 Q_SIGNALS:
  void progressChanged();
  /// The batch has ended, and of some files, or folders, nothing could be read.
  void failed(const QString& message);
  /// The batch has ended: there was no sound in its folders.
  void foundNothing();

 private:
  void follow();

  RolandLibrary& store_;
  bool isRunning_ = false;  ///< a batch whose end hasn't been told
};

}  // namespace tamboro
