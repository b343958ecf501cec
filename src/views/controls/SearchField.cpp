#include "views/controls/SearchField.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QToolButton>

#include "views/controls/Surface.h"
#include "views/look/Look.h"
#include "views/look/Symbols.h"

namespace tamboro {

namespace {

/// A bare symbol in the secondary colour that takes clicks and no focus.
class ClearButton : public QToolButton {
 public:
  ClearButton() {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::ArrowCursor);
    setFixedSize(Look::px(15), Look::px(15));
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintSymbol(painter, QStringLiteral("xmark.circle.fill"), rect(),
                underMouse() ? Look::current().primary : Look::current().secondary);
  }
};

}  // namespace

SearchField::SearchField(const QString& objectName, const QString& placeholder, QWidget* parent)
    : QWidget(parent), field_(new QLineEdit), clear_(new ClearButton) {
  setObjectName(objectName);
  field_->setObjectName(objectName + QStringLiteral("Text"));
  field_->setPlaceholderText(placeholder);
  field_->setAccessibleName(placeholder);
  field_->setToolTip(QStringLiteral("%1 (%2)").arg(
      placeholder, QKeySequence(Qt::CTRL | Qt::Key_F).toString(QKeySequence::NativeText)));
  clear_->setObjectName(objectName + QStringLiteral("Clear"));
  clear_->setAccessibleName(QStringLiteral("Clear"));
  clear_->hide();
  setFocusProxy(field_);
  auto* row = new QHBoxLayout(this);
  row->setSpacing(8);
  row->addWidget(new SymbolView(QStringLiteral("magnifyingglass"), 15, textRole::secondary));
  row->addWidget(field_, 1);
  row->addWidget(clear_);
  connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) {
    clear_->setVisible(!text.isEmpty());
    Q_EMIT textChanged(text);
  });
  connect(clear_, &QToolButton::clicked, field_, &QLineEdit::clear);
}

QString SearchField::text() const {
  return field_->text();
}

DottedI userDottedI() {
  return dottedIOfLocale(QLocale().name().toStdString());
}

}  // namespace tamboro
