#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;

namespace tamboro {

class MenuPicker;

/// A note number as a titled line of two menus, note and octave -1 to 9, with a remark at middle C. It reports which
/// menu was used: the number that results is made from the one stored then, not from the one shown.
class NotePicker : public QWidget {
  Q_OBJECT

 public:
  NotePicker(int titleWidth, int menuWidth, QWidget* parent = nullptr);

  void setNote(std::int64_t number);

 Q_SIGNALS:
  void pitchChosen(int pitch);
  void octaveChosen(int octave);

 private:
  MenuPicker* pitch_;
  MenuPicker* octave_;
  QLabel* remark_;
};

}  // namespace tamboro
