#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <utility>
#include <vector>

namespace tamboro {

class MenuPicker;

/// A titled menu over a leaf with a fixed list of values. A stored value that isn't in the list gets a row "(7)" at the
/// end, until another value is shown: so it is seen and kept.
class RawEnumPicker : public QWidget {
  Q_OBJECT

 public:
  using Options = std::vector<std::pair<std::int64_t, QString>>;

  /// `objectName` names the whole; the menu within it is called so with "Menu" behind.
  RawEnumPicker(const QString& objectName, const QString& title, const Options& options, int titleWidth,
                QWidget* parent = nullptr);

  void setValue(std::int64_t value);
  MenuPicker* menu() const { return menu_; }

 Q_SIGNALS:
  void chosen(qint64 value);

 private:
  MenuPicker* menu_;
  int optionCount_;
};

}  // namespace tamboro
