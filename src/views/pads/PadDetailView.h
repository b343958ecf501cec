#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "library/store/RolandLibrary.h"

class QLabel;
class QPushButton;

namespace tamboro {

class SamplePlayer;
class SetAllPadSheet;
class ThrottledSlider;

/// The sub sound's line: "(none)", the sample's name, or "[1234]" for a number that no sample has.
QString subSoundText(const RolandLibrary& store, WaveId subWave);

/// Every setting of one pad, on a card of its own. A pad that isn't there shows the defaults. The section "Sub" stays
/// open or closed when the pad changes.
class PadDetailView : public QWidget {
  Q_OBJECT

 public:
  PadDetailView(RolandLibrary& store, SamplePlayer& player, QWidget* parent = nullptr);

  /// The pad to show. A drag under way belongs to the former one and is dropped.
  void setPad(Slot slot, int index);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeSetting(const PadSetting& setting);
  QWidget* makeSound(const PadSetting& setting);
  QWidget* makeSubSound(const PadSetting& setting);
  QWidget* makeSlider(const PadSetting& setting);
  QWidget* makeNote(const PadSetting& setting);
  QWidget* makeSwitch(const PadSetting& setting);
  QWidget* makeMenu(const PadSetting& setting);
  QWidget* makeOpenMenu(const PadSetting& setting);
  QWidget* makeGrid();
  QWidget* makeSub();

  /// The pad in the store, or one without leaves, which reads as the defaults.
  Pad pad() const;
  const Wave* waveOf(const Pad& pad) const;
  /// Edits the store and reads it back, since an edit that changes nothing there isn't announced.
  void commit(const PadSetting& setting, std::int64_t value);
  void openSetAllPad();
  void togglePlay();
  void refresh();
  void refreshPlay();

  RolandLibrary& store_;
  SamplePlayer& player_;

  Slot kitSlot_ = 0;
  int padIndex_ = -1;
  QPointer<SetAllPadSheet> setAllPad_;

  QLabel* title_ = nullptr;
  QPushButton* play_ = nullptr;
  std::vector<ThrottledSlider*> sliders_;
  std::vector<std::function<void(const Pad&)>> fills_;  ///< one for each control
};

}  // namespace tamboro
