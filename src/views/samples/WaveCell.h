#pragma once

#include <QVariant>

#include "views/samples/WaveListRules.h"
#include "views/samples/WaveRowDelegate.h"

namespace tamboro {

/// One cell of a sample's row: what it shows, says and is.
struct WaveCell {
  const WaveRowValues& wave;
  int column;
  QString tag;          ///< the tag's title
  QString addHelp;      ///< for the add button only
  bool hasKit = false;  ///< a kit is selected
  bool isPlaying = false;
  bool isOpen = false;  ///< the loop section stands under the row

  QVariant value(int role) const;

 private:
  bool isControl() const;
  bool isShown() const;
  QVariant text() const;
  QString help() const;
  QString emptyText() const;
  QString spokenText() const;
  QVariant accessibleRole() const;
  QString symbol() const;
  WaveTint tint() const;
};

}  // namespace tamboro
