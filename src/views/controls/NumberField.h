#pragma once

#include <QLineEdit>
#include <cstdint>

namespace tamboro {

/// A field for a whole number of any size that 64 bits hold. What was typed is taken at Return and when the focus
/// leaves; what is no number is dropped and the stored one stands again.
class NumberField : public QLineEdit {
  Q_OBJECT

 public:
  NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent = nullptr);

  /// The stored value; reports nothing and leaves an edit under way alone.
  void setValue(std::int64_t value);

 Q_SIGNALS:
  void edited(std::int64_t value);

 private:
  void take();
  void showValue();

  std::int64_t value_ = 0;
};

}  // namespace tamboro
