#pragma once

#include "views/controls/Surface.h"

class QLabel;
class QTimer;

namespace tamboro {

class RolandLibrary;
class UnsavedMark;

/// "1 kit", "0 kits": the noun takes an "s" unless the number is exactly 1.
QString countText(std::size_t count, const QString& noun);

/// How much is on the open card, whether something isn't on it yet, and how far a save is that takes its time.
class StatusLine : public Surface {
  Q_OBJECT

 public:
  explicit StatusLine(RolandLibrary& store, QWidget* parent = nullptr);

 private:
  void refresh();
  void showProgress();

  RolandLibrary& store_;
  QLabel* kits_;
  QLabel* samples_;
  UnsavedMark* unsaved_;
  QLabel* progress_;
  QTimer* progressTimer_;
};

}  // namespace tamboro
