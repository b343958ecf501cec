#pragma once

#include <QWidget>
#include <optional>

#include "library/store/RolandLibrary.h"
#include "views/controls/Prompts.h"

class QScrollArea;

namespace tamboro {

class EditField;
class KitEffectsView;
class PadDetailView;
class PadGridView;
class SamplePlayer;
class ThrottledSlider;

/// One kit in a scrolling column: names, volume and tempo, the pads, the selected pad's details, the effects. A kit
/// that comes into view gets the keyboard to its pads and enters the recent kits.
class KitEditorView : public QWidget {
  Q_OBJECT

 public:
  KitEditorView(RolandLibrary& store, SamplePlayer& player, Prompts& prompts, QWidget* parent = nullptr);

  /// The kit to show. After none it appears: then the selected pad stays if the kit has it. After another one its first
  /// pad is selected.
  void setKit(std::optional<Slot> slot);
  std::optional<Slot> kitSlot() const { return kitSlot_; }
  bool gridFocused() const;
  /// To the pads.
  void takeKeyboard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeHeader();
  void refresh();

  RolandLibrary& store_;

  std::optional<Slot> kitSlot_;

  QScrollArea* scroll_;
  QWidget* sections_;
  EditField* name_;
  EditField* subName_;
  ThrottledSlider* volume_;
  ThrottledSlider* tempo_;
  PadGridView* grid_;
  QWidget* detailSection_;
  PadDetailView* detail_;
  KitEffectsView* effects_;
};

}  // namespace tamboro
