#include "app/ColourScheme.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tamboro {

namespace {

constexpr int firstAnswer = 200;  // milliseconds; a portal that isn't running yet takes longer

const QString& service() {
  static const QString name = QStringLiteral("org.freedesktop.portal.Desktop");
  return name;
}

const QString& path() {
  static const QString name = QStringLiteral("/org/freedesktop/portal/desktop");
  return name;
}

const QString& interface() {
  static const QString name = QStringLiteral("org.freedesktop.portal.Settings");
  return name;
}

const QString& space() {
  static const QString name = QStringLiteral("org.freedesktop.appearance");
  return name;
}

const QString& key() {
  static const QString name = QStringLiteral("color-scheme");
  return name;
}

}  // namespace

ColourScheme::ColourScheme(const QDBusConnection& bus, QObject* parent) : QObject(parent) {
  if (!bus.isConnected()) return;
  qRegisterMetaType<QDBusVariant>();  // the slot is found by the names of its types
  QDBusConnection(bus).connect(service(), path(), interface(), QStringLiteral("SettingChanged"), this,
                               SLOT(settingChanged(QString, QString, QDBusVariant)));
  ask(bus);
}

void ColourScheme::ask(QDBusConnection bus) {
  // `Read`, which every portal has; it wraps its value twice, its successor once.
  auto question = QDBusMessage::createMethodCall(service(), path(), interface(), QStringLiteral("Read"));
  question << space() << key();
  const QDBusMessage answer = bus.call(question, QDBus::Block, firstAnswer);
  if (answer.type() == QDBusMessage::ReplyMessage) return take(answer.arguments().value(0));
  const QDBusError::ErrorType failure = QDBusError(answer).type();
  if (failure != QDBusError::NoReply && failure != QDBusError::Timeout) return;
  auto* late = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(late, &QDBusPendingCallWatcher::finished, this, [this, late] {
    late->deleteLater();
    if (!late->isError()) take(late->reply().arguments().value(0));
  });
}

void ColourScheme::settingChanged(const QString& changedSpace, const QString& changedKey, const QDBusVariant& value) {
  if (changedSpace == space() && changedKey == key()) take(value.variant());
}

void ColourScheme::take(const QVariant& value) {
  QVariant inner = value;
  while (inner.canConvert<QDBusVariant>())
    inner = inner.value<QDBusVariant>().variant();
  const uint wanted = inner.toUInt();
  const Wish wish = wanted == 1 ? Wish::dark : wanted == 2 ? Wish::light : Wish::unknown;
  if (std::exchange(wish_, wish) != wish) Q_EMIT changed();
}

}  // namespace tamboro
