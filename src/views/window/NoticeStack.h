#pragma once

#include <QWidget>
#include <utility>
#include <vector>

#include "views/window/NoticeLine.h"

class QVBoxLayout;

namespace tamboro {

/// Notices under each other, in the order in which they came; nothing is seen of it while there is none.
class NoticeStack : public QWidget {
  Q_OBJECT

 public:
  explicit NoticeStack(QWidget* parent = nullptr);

  /// Shows a notice, in the place of one with the same key. It goes when it is closed, when one of its actions is
  /// chosen, right before that runs, or by `remove`. The key is its object name.
  void put(const QString& key, Notice notice);
  /// Does nothing where there is none.
  void remove(const QString& key);
  bool holds(const QString& key) const;

 private:
  using Lines = std::vector<std::pair<QString, NoticeLine*>>;
  Lines::const_iterator find(const QString& key) const;
  void orderTabs();

  Lines lines_;
  QVBoxLayout* rows_;
};

}  // namespace tamboro
