#pragma once

#include <QLineEdit>
#include <functional>

#include "views/look/Look.h"

namespace tamboro {

/// A plain field over a stored text: it writes at each change and then shows what was stored, which can be less. Fill
/// and outline come only under the pointer and with the focus.
class EditField : public QLineEdit {
  Q_OBJECT

 public:
  struct Text {
    std::function<QString()> read;
    std::function<void(const QString&)> write;
  };
  EditField(const QString& objectName, const QString& placeholder, Text stored, QWidget* parent = nullptr);

  /// Of the text; primary without this.
  void setTextColour(QColor Look::*colour);
  /// Shows the stored text; keeps cursor and selection, and leaves a composition under way alone.
  void refresh();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void takeColour();
  void align();

  Text stored_;
  QColor Look::*colour_ = nullptr;
  bool isComposing_ = false;
};

}  // namespace tamboro
