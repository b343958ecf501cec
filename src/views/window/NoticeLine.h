#pragma once

#include <functional>
#include <vector>

#include "views/controls/Surface.h"

namespace tamboro {

/// What has to be known and isn't the failure of an action just taken.
struct Notice {
  struct Action {
    QString title;
    std::function<void()> run;
  };
  QString text;
  QString detail = {};  ///< under the text, smaller
  std::vector<Action> actions = {};
};

/// One notice as a quiet line: its texts wrap within a few lines, behind them stand its buttons and one that closes it.
/// Assistive tools are told of it when it appears. Escape closes it while it has the focus, which no click gives it.
class NoticeLine : public Surface {
  Q_OBJECT

 public:
  explicit NoticeLine(const QString& objectName, const Notice& notice, QWidget* parent = nullptr);

  /// The buttons in the order of the Tab key; the one that closes is the last.
  const std::vector<QWidget*>& buttons() const { return buttons_; }

 Q_SIGNALS:
  void closed();
  /// The action at this place was chosen.
  void chosen(std::size_t action);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLayout* makeTexts(const Notice& notice);

  std::vector<QWidget*> buttons_;
};

}  // namespace tamboro
