#include "views/look/Symbols.h"

#include <QDir>
#include <QFile>
#include <QIconEngine>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <algorithm>

#include "views/look/Look.h"

namespace tamboro {

namespace {

const QString folder = QStringLiteral(":/symbols/");
const QString suffix = QStringLiteral(".svg");

/// A symbol's file in one colour. On a colour, what a file hides is shown: the white sign in its disc, which on a grey
/// one lets the ground through.
QByteArray drawing(const QString& name, const QColor& colour) {
  QFile file(folder + name + suffix);
  if (!file.open(QIODevice::ReadOnly)) return {};
  QByteArray text = file.readAll().replace("currentColor", colour.name().toLatin1());
  if (colour.hsvSaturationF() > 0.5F) text.replace(R"(display="none")", "");
  return text;
}

/// In the device's pixels, with the square where it lies between them.
QPixmap rendered(const QString& name, const QRectF& square, const QSize& size, const QColor& colour) {
  QPixmap pixmap(size);
  pixmap.fill(Qt::transparent);
  const QByteArray text = drawing(name, colour);
  if (text.isEmpty()) return pixmap;
  QPainter painter(&pixmap);
  QSvgRenderer(text).render(&painter, square);
  return pixmap;
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
  const double side = std::min(rect.width(), rect.height());
  const QRectF square(rect.center() - QPointF(side, side) / 2, QSizeF(side, side));
  const QTransform toDevice = painter.deviceTransform();
  const QRectF onDevice = toDevice.mapRect(square);
  const QRect pixels = onDevice.toAlignedRect();
  if (pixels.isEmpty()) return;
  const QRectF within = onDevice.translated(-pixels.topLeft());
  // Reading and stroking take far longer than copying what came of it, and a list paints a hundred symbols at a time.
  const QString key = QStringLiteral("tamboro.symbol/%1/%2/%3/%4/%5")
                          .arg(name, colour.name(QColor::HexRgb))
                          .arg(within.x(), 0, 'f', 3)
                          .arg(within.y(), 0, 'f', 3)
                          .arg(within.width(), 0, 'f', 3);
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = rendered(name, within, pixels.size(), colour);
    QPixmapCache::insert(key, pixmap);
  }
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);  // pixel for pixel
  painter.setOpacity(painter.opacity() * colour.alphaF());
  painter.drawPixmap(toDevice.inverted().mapRect(QRectF(pixels.topLeft(), pixmap.size())), pixmap, pixmap.rect());
  painter.restore();
}

QIcon symbolIcon(const QString& name, const QColor& colour) {
  return QIcon(new SymbolEngine(name, colour));
}

QStringList symbolNames() {
  QStringList names = QDir(folder).entryList();
  for (QString& name : names)
    name.chop(suffix.size());
  return names;
}

}  // namespace tamboro
