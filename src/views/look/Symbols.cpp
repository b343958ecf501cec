#include "views/look/Symbols.h"

#include <QIconEngine>
#include <QPainterPath>
#include <functional>
#include <map>
#include <vector>

#include "views/look/Look.h"

namespace tamboro {

namespace {

/// The outlines of one symbol in the 16-unit grid. They are made once: cutting and stroking takes far longer than
/// filling what came of it, and a list paints a hundred symbols at a time.
struct Outlines {
  std::vector<QPainterPath> filled;
  QPainterPath sign;  ///< white on a colour
};

/// Draws one symbol: a pen with round caps and joins, of 1.35 where the symbol is as small as a letter.
class Sketch {
 public:
  void setPen(double width) { pen_ = width; }
  void line(std::initializer_list<QPointF> points, bool closed = false) { stroke(polygon(points, closed)); }
  void stroke(const QPainterPath& path) { lines_.addPath(path); }
  void fill(const QPainterPath& path) { outlines_.filled.push_back(path); }
  void circle(QPointF centre, double radius) {
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    stroke(path);
  }
  void disc(QPointF centre, double radius) {
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    fill(path);
  }
  void box(const QRectF& rect, double radius, bool filled = false) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    filled ? fill(path) : stroke(path);
  }
  /// A filled disc with a sign in it: white on a colour, the ground itself where the disc is grey.
  void discWithSign(std::initializer_list<std::pair<QPointF, QPointF>> lines) {
    QPainterPath sign;
    for (const auto& [from, to] : lines) {
      sign.moveTo(from);
      sign.lineTo(to);
    }
    outlines_.sign = stroked(sign).simplified();
    QPainterPath whole;
    whole.addEllipse(QPointF(8, 8), 7, 7);
    fill(whole.subtracted(outlines_.sign));
  }
  static QPainterPath polygon(std::initializer_list<QPointF> points, bool closed) {
    QPainterPath path(*points.begin());
    for (const QPointF* point = points.begin() + 1; point != points.end(); ++point)
      path.lineTo(*point);
    if (closed) path.closeSubpath();
    return path;
  }
  Outlines finished() {
    if (!lines_.isEmpty()) fill(stroked(lines_));
    return std::move(outlines_);
  }

 private:
  QPainterPath stroked(const QPainterPath& path) const {
    const QPen pen(Qt::black, pen_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    return QPainterPathStroker(pen).createStroke(path);
  }

  double pen_ = 1.35;
  Outlines outlines_;
  QPainterPath lines_;
};

using Drawing = std::function<void(Sketch&)>;

void grid(Sketch& s, bool filled) {
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      s.box(filled ? QRectF(0.75 + column * 5, 0.75 + row * 5, 4.5, 4.5)
                   : QRectF(0.8 + column * 5, 0.8 + row * 5, 4.4, 4.4),
            filled ? 1.1 : 1.0, filled);
}

void tag(Sketch& s) {
  QPainterPath path(QPointF(2.2, 3.4));
  path.quadTo(2.2, 2.2, 3.4, 2.2);
  path.lineTo(7.6, 2.2);
  path.lineTo(13.6, 8.2);
  path.quadTo(14.3, 8.9, 13.6, 9.6);
  path.lineTo(9.6, 13.6);
  path.quadTo(8.9, 14.3, 8.2, 13.6);
  path.lineTo(2.2, 7.6);
  path.closeSubpath();
  s.stroke(path);
  s.disc({5.2, 5.2}, 1.0);
}

void drive(Sketch& s) {
  s.fill(Sketch::polygon({{3.6, 3.8}, {12.4, 3.8}, {14.6, 8.0}, {1.4, 8.0}}, true));
  QPainterPath body;
  body.addRoundedRect(QRectF(1.2, 8.2, 13.6, 4.4), 1.4, 1.4);
  QPainterPath lamp;
  lamp.addEllipse(QPointF(12.2, 10.4), 0.85, 0.85);
  s.fill(body.subtracted(lamp));
}

void trash(Sketch& s) {
  s.line({{2.4, 4.2}, {13.6, 4.2}});
  s.line({{6.0, 4.0}, {6.0, 2.2}, {10.0, 2.2}, {10.0, 4.0}});
  s.line({{3.7, 4.4}, {4.4, 13.8}, {11.6, 13.8}, {12.3, 4.4}});
  s.line({{6.6, 7.0}, {6.8, 11.2}});
  s.line({{9.4, 7.0}, {9.2, 11.2}});
}

void pencil(Sketch& s) {
  s.line({{2.4, 13.6}, {3.2, 10.4}, {11.0, 2.6}, {13.4, 5.0}, {5.6, 12.8}}, true);
  s.line({{9.2, 4.4}, {11.6, 6.8}});
}

void copies(Sketch& s) {
  s.box({5.4, 5.4, 8.4, 8.4}, 1.8);
  QPainterPath behind(QPointF(3.6, 10.6));
  behind.quadTo(2.2, 10.6, 2.2, 9.2);
  behind.lineTo(2.2, 4.0);
  behind.quadTo(2.2, 2.2, 4.0, 2.2);
  behind.lineTo(9.2, 2.2);
  behind.quadTo(10.6, 2.2, 10.6, 3.6);
  s.stroke(behind);
}

void openBox(Sketch& s) {
  s.line({{5.0, 6.4},
          {3.4, 6.4},
          {2.4, 7.2},
          {2.4, 12.8},
          {3.4, 13.8},
          {12.6, 13.8},
          {13.6, 12.8},
          {13.6, 7.2},
          {12.6, 6.4},
          {11.0, 6.4}});
}

void waveform(Sketch& s) {
  const double heights[] = {1.2, 3.2, 5.6, 2.4, 4.6, 1.6};
  double x = 1.8;
  for (double height : heights) {
    s.line({{x, 8 - height}, {x, 8 + height}});
    x += 2.48;
  }
}

std::map<QString, Drawing> drawings() {
  static const auto key = [](const char* name) { return QString::fromLatin1(name); };
  return {
      {key("square.grid.3x3"),
       [](Sketch& s) {
         s.setPen(0.75);  // only ever drawn large
         grid(s, false);
       }},
      {key("square.grid.3x3.fill"), [](Sketch& s) { grid(s, true); }},
      {key("internaldrive.fill"), drive},
      {key("tag"), tag},
      {key("sidebar.left"),
       [](Sketch& s) {
         s.box({1.4, 2.6, 13.2, 10.8}, 1.8);
         s.line({{5.8, 2.8}, {5.8, 13.2}});
       }},
      {key("square.and.arrow.down"),
       [](Sketch& s) {
         openBox(s);
         s.line({{8, 1.8}, {8, 10.2}});
         s.line({{5.2, 7.4}, {8, 10.2}, {10.8, 7.4}});
       }},
      {key("square.and.pencil"),
       [](Sketch& s) {
         s.line(
             {{8.0, 2.8}, {3.6, 2.8}, {2.4, 4.0}, {2.4, 12.6}, {3.4, 13.8}, {12.2, 13.8}, {13.4, 12.6}, {13.4, 8.4}});
         s.line({{6.2, 9.8}, {6.6, 7.8}, {12.0, 2.2}, {13.8, 4.0}, {8.2, 9.4}}, true);
       }},
      {key("pencil"), pencil},
      {key("plus"),
       [](Sketch& s) {
         s.line({{8, 2.8}, {8, 13.2}});
         s.line({{2.8, 8}, {13.2, 8}});
       }},
      {key("magnifyingglass"),
       [](Sketch& s) {
         s.circle({6.8, 6.8}, 4.6);
         s.line({{10.2, 10.2}, {14.0, 14.0}});
       }},
      {key("xmark.circle.fill"),
       [](Sketch& s) {
         s.discWithSign({{{5.6, 5.6}, {10.4, 10.4}}, {{10.4, 5.6}, {5.6, 10.4}}});
       }},
      {key("plus.circle.fill"),
       [](Sketch& s) {
         s.discWithSign({{{8, 4.8}, {8, 11.2}}, {{4.8, 8}, {11.2, 8}}});
       }},
      {key("arrow.up.circle"),
       [](Sketch& s) {
         s.circle({8, 8}, 6.3);
         s.line({{8, 11.4}, {8, 4.8}});
         s.line({{5.4, 7.4}, {8, 4.8}, {10.6, 7.4}});
       }},
      {key("arrow.right"),
       [](Sketch& s) {
         s.line({{2.6, 8}, {13.4, 8}});
         s.line({{9.6, 4.2}, {13.4, 8}, {9.6, 11.8}});
       }},
      {key("play.fill"),
       [](Sketch& s) {
         s.fill(Sketch::polygon({{4.2, 2.2}, {13.4, 8}, {4.2, 13.8}}, true));
       }},
      {key("stop.fill"),
       [](Sketch& s) {
         s.box({3.6, 3.6, 8.8, 8.8}, 1.2, true);
       }},
      {key("trash"), trash},
      {key("square.on.square"), copies},
      {key("waveform"), waveform},
      {key("checkmark"),
       [](Sketch& s) {
         s.line({{3.4, 8.4}, {6.6, 11.6}, {12.6, 4.6}});
       }},
      {key("chevron.right"),
       [](Sketch& s) {
         s.line({{6, 3.2}, {10.8, 8}, {6, 12.8}});
       }},
      {key("chevron.left"),
       [](Sketch& s) {
         s.line({{10, 3.2}, {5.2, 8}, {10, 12.8}});
       }},
      {key("chevron.down"),
       [](Sketch& s) {
         s.line({{3.2, 6}, {8, 10.8}, {12.8, 6}});
       }},
      {key("chevron.up"),
       [](Sketch& s) {
         s.line({{3.2, 10}, {8, 5.2}, {12.8, 10}});
       }},
      {key("chevron.up.chevron.down"), [](Sketch& s) {
         s.line({{4.8, 6.0}, {8, 2.8}, {11.2, 6.0}});
         s.line({{4.8, 10.0}, {8, 13.2}, {11.2, 10.0}});
       }}};
}

const std::map<QString, Outlines>& symbols() {
  static const std::map<QString, Outlines> all = [] {
    std::map<QString, Outlines> made;
    for (const auto& [name, draw] : drawings()) {
      Sketch sketch;
      draw(sketch);
      made.emplace(name, sketch.finished());
    }
    return made;
  }();
  return all;
}

class SymbolEngine : public QIconEngine {
 public:
  SymbolEngine(QString name, QColor colour) : name_(std::move(name)), colour_(colour) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    paintSymbol(*painter, name_, rect,
                mode == QIcon::Disabled ? Look::current().disabledText
                : colour_.isValid()     ? colour_
                                        : painter->pen().color());
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap made(size);
    made.fill(Qt::transparent);
    QPainter painter(&made);
    painter.setPen(Look::current().primary);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return made;
  }
  QIconEngine* clone() const override { return new SymbolEngine(name_, colour_); }
  QString key() const override { return QStringLiteral("tamboro.symbol"); }

 private:
  QString name_;
  QColor colour_;
};

}  // namespace

void paintSymbol(QPainter& painter, const QString& name, const QRectF& rect, const QColor& colour) {
  const auto found = symbols().find(name);
  if (found == symbols().end()) return;
  const double side = std::min(rect.width(), rect.height());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.center() - QPointF(side, side) / 2);
  painter.scale(side / 16, side / 16);
  for (const QPainterPath& path : found->second.filled)
    painter.fillPath(path, colour);
  if (colour.hsvSaturationF() > 0.5F) painter.fillPath(found->second.sign, Qt::white);
  painter.restore();
}

QIcon symbolIcon(const QString& name, const QColor& colour) {
  return QIcon(new SymbolEngine(name, colour));
}

QStringList symbolNames() {
  QStringList names;
  for (const auto& [name, outlines] : symbols())
    names << name;
  return names;
}

}  // namespace tamboro
