#include "app/DesktopFileViewer.h"

#include <QDesktopServices>
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#endif

namespace tamboro {

namespace {

#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
// Long enough for a file manager that the bus has to start first.
constexpr int busTimeOut = 5000;

QDBusPendingCall askFileManager(const QByteArray& address) {
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowFolders"));
  call.setArguments({QStringList{QString::fromLatin1(address)}, QString()});
  return QDBusConnection::sessionBus().asyncCall(call, busTimeOut);
}
#endif

}  // namespace

QByteArray fileAddress(const std::filesystem::path& path) {
  return "file://" + QByteArray::fromStdString(path.string()).toPercentEncoding("/");
}

DesktopFileViewer::DesktopFileViewer(Opener opener, QObject* parent)
    : QObject(parent), opener_(opener ? std::move(opener) : [](const QUrl& url) { QDesktopServices::openUrl(url); }) {}

void DesktopFileViewer::showFolder(const std::filesystem::path& folder) {
  const QByteArray address = fileAddress(folder);
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
  auto* call = new QDBusPendingCallWatcher(askFileManager(address), this);
  connect(call, &QDBusPendingCallWatcher::finished, this, [this, address](QDBusPendingCallWatcher* ended) {
    ended->deleteLater();
    if (ended->isError()) opener_(QUrl::fromEncoded(address));
  });
#else
  opener_(QUrl::fromEncoded(address));
#endif
}

}  // namespace tamboro
