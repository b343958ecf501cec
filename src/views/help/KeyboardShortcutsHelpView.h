#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "views/controls/Sheet.h"

class QLayout;

namespace tamboro {

/// The sheet of the program's keys and clicks. Help text only: nothing here registers a key.
class KeyboardShortcutsHelpView : public Sheet {
  Q_OBJECT

 public:
  struct Shortcut {
    QString keys;
    QString description;
  };
  using Section = std::pair<QString, std::vector<Shortcut>>;
  static const std::vector<Section>& sections();

  explicit KeyboardShortcutsHelpView(QWidget* parent);
};

}  // namespace tamboro
