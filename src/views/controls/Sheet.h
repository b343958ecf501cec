#pragma once

#include <QDialog>

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

namespace tamboro {

/// A window-modal dialog in the look's space. Shown with `open`, never with `exec`; Escape closes it; deletes itself
/// when closed.
class Sheet : public QDialog {
  Q_OBJECT

 public:
  Sheet(const QString& objectName, const QString& title, QWidget* parent);

  /// A title row with a button at its far end that closes the sheet, and a hairline under it.
  QPushButton* addHeader(const QString& title, const QString& closeTitle);
  /// The content's column: 20 around, 16 between.
  QVBoxLayout* column() { return column_; }
  /// The row at the lower trailing corner; buttons stand in the order in which they are added.
  QPushButton* addButton(const QString& title);

 private:
  QVBoxLayout* rows_;
  QVBoxLayout* column_;
  QHBoxLayout* buttons_ = nullptr;
};

}  // namespace tamboro
