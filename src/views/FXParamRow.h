#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>

#include "model/FXTypeDef.h"

class QLabel;
class QSlider;

namespace tamboro {

class MenuPicker;

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
  int valueWidth() const;
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
  std::int64_t value_ = 0;
  MenuPicker* menu_ = nullptr;
  QSlider* slider_ = nullptr;
  QLabel* text_ = nullptr;
  QLabel* caption_ = nullptr;
  QWidget* trailing_ = nullptr;
};

}  // namespace tamboro
