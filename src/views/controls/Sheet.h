#pragma once

#include <QDialog>

class QHBoxLayout;
class QKeyEvent;
class QPushButton;
class QVBoxLayout;

namespace tamboro {

/// For a dialog whose buttons aren't the toolkit's automatic defaults: Return on one that has the focus presses it, and
/// so is done with.
bool pressesFocusedButton(const QDialog& dialog, const QKeyEvent& event);

/// A window-modal dialog in the look's space. Shown with `open`, never with `exec`; Escape closes it, Return presses
/// the button that has the focus, else the default one; deletes itself when closed.
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

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QVBoxLayout* rows_;
  QVBoxLayout* column_;
  QHBoxLayout* buttons_ = nullptr;
};

}  // namespace tamboro
