#pragma once

#include <QWidget>

#include "views/look/Look.h"

namespace tamboro {

/// A plain ground in one of the look's colours, with a separator along some of its edges.
class Surface : public QWidget {
  Q_OBJECT

 public:
  explicit Surface(QColor Look::*colour, Qt::Edges separators = {}, QWidget* parent = nullptr)
      : QWidget(parent), colour_(colour), separators_(separators) {}

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor Look::*colour_;
  Qt::Edges separators_;
};

/// One symbol in a text colour; decoration, so assistive tools pass it over.
class SymbolView : public QWidget {
  Q_OBJECT

 public:
  SymbolView(const QString& symbol, double side, QPalette::ColorRole role, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString symbol_;
};

}  // namespace tamboro
