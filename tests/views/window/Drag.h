#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <memory>

namespace tamboro::test {

/// As file managers drag files: as addresses and as text.
inline std::unique_ptr<QMimeData> dragOf(const QByteArray& uris) {
  auto data = std::make_unique<QMimeData>();
  if (!uris.isEmpty()) data->setData(QStringLiteral("text/uri-list"), uris);
  data->setText(QString::fromUtf8(uris));
  return data;
}

/// Drags over the widget and lets go where that is accepted; the accepted action, or none.
inline Qt::DropAction dropUris(QWidget& target, const QByteArray& uris, Qt::DropActions offered = Qt::CopyAction) {
  const auto data = dragOf(uris);
  QDragEnterEvent enter(QPoint(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  if (!enter.isAccepted()) return Qt::IgnoreAction;
  QDropEvent let(QPointF(5, 5), offered, data.get(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &let);
  return let.isAccepted() ? let.dropAction() : Qt::IgnoreAction;
}

}  // namespace tamboro::test
