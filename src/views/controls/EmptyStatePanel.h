#pragma once

#include <QWidget>

class QLabel;

namespace tamboro {

/// What a place shows that has nothing to show: a title under a symbol, both centred.
class EmptyStatePanel : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyStatePanel(const QString& title, const QString& symbol = {}, QWidget* parent = nullptr);

  QString title() const;
  void setTitle(const QString& title);

 private:
  QLabel* title_;
};

}  // namespace tamboro
