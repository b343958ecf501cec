#pragma once

#include <QWidget>

class QVBoxLayout;

namespace tamboro {

/// One section of a form: a headline over a rounded box of rows with hairlines between those that show.
class FormGroup : public QWidget {
  Q_OBJECT

 public:
  FormGroup(const QString& objectName, const QString& title, QWidget* parent = nullptr);

  /// A row of its own for one control at the leading edge, or for a text over the whole width. Gives the row, which can
  /// be hidden.
  QWidget* addRow(QWidget* content, Qt::Alignment alignment = {});
  /// A row with a title and its control flush at the far edge.
  QWidget* addTitledRow(const QString& title, QWidget* control);

 private:
  class Box;

  Box* box_;
  QVBoxLayout* rows_;
};

}  // namespace tamboro
