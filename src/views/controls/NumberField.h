#pragma once

#include <QLineEdit>
#include <cstdint>

namespace tamboro {

/// A field for a whole number of any size that 64 bits hold. What was typed is taken at Return, when the focus leaves,
/// and before a click elsewhere or the key that saves does anything, so that a save holds what is seen. What is no
/// number is dropped and the stored one stands again.
class NumberField : public QLineEdit {
  Q_OBJECT

 public:
  NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent = nullptr);

  /// The stored value; reports nothing and leaves an edit under way alone.
  void setValue(std::int64_t value);

 Q_SIGNALS:
  void edited(std::int64_t value);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void take();
  void showValue();

  std::int64_t value_ = 0;
};

}  // namespace tamboro
