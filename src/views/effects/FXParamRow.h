#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>

#include "model/FXTypeDef.h"

class QLabel;

namespace tamboro {

class MenuPicker;
class ValueSlider;

/// A parameter's number as shown: with its unit behind a blank if it has one, outside its range as it is stored.
QString fxValueText(const FXParamDef::Kind& kind, std::int64_t value);

/// Where the control stands for a stored number: the nearest slider position or option.
int fxPosition(const FXParamDef::Kind& kind, std::int64_t value);

/// One parameter of an effect: a slider with its number, or a menu. Every movement is reported at once.
class FXParamRow : public QWidget {
  Q_OBJECT

 public:
  using OnChange = std::function<void(std::int64_t)>;

  /// The control within is called as the whole with "Slider" or "Menu" behind.
  FXParamRow(const QString& objectName, const FXParamDef& param, OnChange onChange, QWidget* parent = nullptr);

  void setValue(std::int64_t value);
  QWidget* control() const;

  /// What stands behind the slider: the box of the number, and how much of the row the box and a caption need.
  int valueWidth() const { return valueWidth_; }
  int trailingWidth(int valueWidth) const;
  bool hasCaption() const { return caption_ != nullptr; }
  /// Gives all rows of an effect the same room there, so that their sliders end together.
  void setTrailing(int valueWidth, int trailingWidth);

 private:
  void addMenu(const FXParamDef::Options& options);
  void addSlider(std::int64_t lower, std::int64_t upper);
  void addTrailing(std::string_view caption);

  FXParamDef param_;
  OnChange onChange_;
  std::optional<std::int64_t> value_;
  int boundsWidth_ = 0;  ///< of the numbers at the ends of the range
  int valueWidth_ = 0;
  MenuPicker* menu_ = nullptr;
  ValueSlider* slider_ = nullptr;
  QLabel* text_ = nullptr;
  QLabel* caption_ = nullptr;
  QWidget* trailing_ = nullptr;
};

}  // namespace tamboro
