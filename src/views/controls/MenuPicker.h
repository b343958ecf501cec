#pragma once

#include <QComboBox>
#include <cstdint>

namespace tamboro {

/// A pop-up menu whose rows stand for integers. A value that has no row leaves the menu without a selection; only the
/// user's choice reports, also that of the row that is selected already.
class MenuPicker : public QComboBox {
  Q_OBJECT

 public:
  MenuPicker(const QString& objectName, const QString& accessibleName, QWidget* parent = nullptr);

  void addRow(std::int64_t value, const QString& text);
  /// Rows `lower` to `upper`, each called by its number behind the prefix.
  void addNumbers(std::int64_t lower, std::int64_t upper, const QString& prefix = {});
  void setValue(std::int64_t value);
  /// A value between the rows': none is chosen, and the keyboard begins at the nearest.
  void setValueBetween(double value);
  /// The width in a form; a narrow column may take up to a half of it.
  void setWidth(int width);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  void showPopup() override;

 Q_SIGNALS:
  void chosen(qint64 value);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int rowBeside(int way) const;

  int width_ = 0;
  double value_ = 0;  ///< as last set, which may have no row
};

}  // namespace tamboro
