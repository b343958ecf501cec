#pragma once

#include <QLineEdit>
#include <cstdint>
#include <functional>
#include <optional>

namespace tamboro {

/// A field for a whole number of any size that 64 bits hold. What was typed is taken at Return, when the focus leaves,
/// and before a click elsewhere or the key that saves does anything, so that a save holds what is seen. What is no
/// number is dropped and the stored one stands again. The click that gives it the focus selects all, to be typed over.
class NumberField : public QLineEdit {
  Q_OBJECT

 public:
  /// How a value is written, and what a written text stands for; nothing where it is no value.
  struct Notation {
    std::function<QString(std::int64_t)> write;
    std::function<std::optional<std::int64_t>(const QString&)> read;
  };

  NumberField(const QString& objectName, const QString& accessibleName, QWidget* parent = nullptr);

  /// Plain digits without this.
  void setNotation(Notation notation);
  /// The stored value; reports nothing and leaves an edit under way alone.
  void setValue(std::int64_t value);
  std::int64_t value() const { return value_; }
  /// What the value is written as.
  QString written(std::int64_t value) const { return notation_.write(value); }
  /// Reports what was typed, if that is another value.
  void take();

 Q_SIGNALS:
  void edited(std::int64_t value);

 protected:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isEditing() const { return text() != shown_; }
  void showValue();

  std::int64_t value_ = 0;
  QString shown_;  ///< as last written
  bool isFirstClick_ = false;
  bool isTyped_ = false;  ///< the change of the text that is being told
  Notation notation_;
};

}  // namespace tamboro
