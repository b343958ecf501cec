#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace tamboro {

/// Whether the desktop wants light or dark windows, as it tells all its programs: the key `color-scheme` of
/// `org.freedesktop.appearance` in `org.freedesktop.portal.Settings`. Where no portal answers it stays `unknown`. Main
/// thread only.
class ColourScheme : public QObject {
  Q_OBJECT

 public:
  enum class Wish { unknown, light, dark };

  /// Asks at once and waits a moment for the answer, so that the first window needn't change; a later answer counts,
  /// too.
  explicit ColourScheme(const QDBusConnection& bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

  Wish wish() const { return wish_; }

 Q_SIGNALS:
  void changed();

 private:
  Q_SLOT void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);
  void ask(QDBusConnection bus);
  void take(const QVariant& value);

  Wish wish_ = Wish::unknown;
};

}  // namespace tamboro
