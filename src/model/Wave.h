#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "card/SpdNode.h"
#include "model/Elements.h"
#include "model/Keys.h"

namespace tamboro {

/// One sample of the card, a typed view over the tree of `WAVE/PRM/BB/FF.spd`.
struct Wave {
  std::int64_t bank;
  std::int64_t fileNumber;
  SpdNode node;
  bool isDirty = false;    // `node` holds changes that are not on the card
  bool isPending = false;  // the audio is not on the card yet

  WaveId id() const { return waveId(bank, fileNumber); }
  bool isFactory() const { return bank < firstUserBank; }
  std::string name() const { return elements::waveName.read(node); }
  std::int64_t tag() const { return elements::waveTag.read(node); }
  std::int64_t tempo() const { return elements::waveTempo.read(node); }  // tenths of a beat per minute
  std::int64_t beat() const { return elements::waveBeat.read(node); }
  std::int64_t start() const { return elements::waveStart.read(node); }
  std::int64_t end() const { return elements::waveEnd.read(node); }
  bool hasMeasure() const { return node.child(elements::waveMeasure.name) != nullptr; }

  /// Where the audio lies, as bytes relative to WAVE/DATA: the `Path` leaf as it stands, unchecked; empty when `Path`
  /// is no leaf; built from bank and name when there is none.
  std::string relativeAudioPath() const;

  friend bool operator==(const Wave&, const Wave&) = default;
};

/// The bank's folder name, `%02d`.
std::string bankFolder(std::int64_t bank);

/// The tree of a new sample: name, tag and path as given, everything else at its default.
SpdNode newWaveNode(std::string_view name, std::int64_t tag, std::string_view path);

}  // namespace tamboro
