#pragma once

#include <QWidget>

#include "text/Unicode.h"

class QLineEdit;
class QToolButton;

namespace tamboro {

/// A magnifier, a field and, while there is text in it, a button that empties it.
class SearchField : public QWidget {
  Q_OBJECT

 public:
  SearchField(const QString& objectName, const QString& placeholder, QWidget* parent = nullptr);

  QString text() const;

 Q_SIGNALS:
  void textChanged(const QString& text);

 private:
  QLineEdit* field_;
  QToolButton* clear_;
};

/// How the user's language tells i from dotless i in a search.
DottedI userDottedI();

}  // namespace tamboro
