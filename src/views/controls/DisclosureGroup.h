#pragma once

#include <QPushButton>
#include <QWidget>

#include "views/look/Look.h"

namespace tamboro {

/// The title of a folding section, with a chevron that points down while the section is open. Space turns it over, the
/// arrow keys open and close it.
class DisclosureButton : public QPushButton {
  Q_OBJECT

 public:
  DisclosureButton(const QString& title, TextStyle style, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

/// A folding section, closed at first.
class DisclosureGroup : public QWidget {
  Q_OBJECT

 public:
  /// `objectName` names the whole; its title is called so with "Title" behind. `gap` stands above the
  /// content, whose lines leave room for focus rings.
  DisclosureGroup(const QString& objectName, const QString& title, TextStyle style, QWidget* content, int gap,
                  QWidget* parent = nullptr);

  bool isExpanded() const { return title_->isChecked(); }
  void setExpanded(bool on) { title_->setChecked(on); }

 private:
  DisclosureButton* title_;
};

}  // namespace tamboro
