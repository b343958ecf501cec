#pragma once

#include "views/controls/Prompts.h"
#include "views/controls/Sheet.h"

namespace tamboro {

/// An alert as a sheet of 360: headline, text, buttons in the stated order. A destructive button is never the default:
/// then the focus starts on the one that cancels. The result of `finished` is the pressed button's position.
class AlertSheet : public Sheet {
  Q_OBJECT

 public:
  AlertSheet(const Alert& alert, QWidget* parent);
  void reject() override { done(cancelPosition_); }

 private:
  void addText(const QString& objectName, const QString& text, bool isHeadline);
  void addButtons(const Alert& alert);

  int cancelPosition_ = 0;
};

}  // namespace tamboro
