#pragma once

#include <QSplitter>

namespace tamboro {

/// The workspace's three columns: 204, 568 and 426 at first, stretch to the middle. The left one collapses like a
/// sidebar, by hand or when the window gets too narrow for all three, and comes back by itself in the second case.
class ColumnSplitter : public QSplitter {
  Q_OBJECT

 public:
  ColumnSplitter(QWidget* left, QWidget* middle, QWidget* right, QWidget* parent = nullptr);
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QList<int> beforeCollapse_;  ///< empty unless the left column gave way
};

}  // namespace tamboro
