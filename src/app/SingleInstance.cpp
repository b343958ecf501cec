#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>

namespace tamboro {

namespace {

QString text(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

/// Sockets have short paths: the folder's own can be too long.
QString addressOf(const QString& folder) {
  const QByteArray hash = QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha256).toHex().first(16);
  return QStringLiteral("tamboro-") + QLatin1String(hash);
}

}  // namespace

SingleInstance::SingleInstance(const std::filesystem::path& folder, QObject* parent)
    : QObject(parent), address_(addressOf(text(folder))), lock_(text(folder / "running")) {
  QDir().mkpath(text(folder));
  lock_.setStaleLockTime(0);  // a program may run for days; only one that is gone has lost its place
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::answer);
}

SingleInstance::Start SingleInstance::claim(std::chrono::milliseconds patience) {
  const QDeadlineTimer end(patience);
  do {
    if (lock_.tryLock(0)) {
      QLocalServer::removeServer(address_);  // left by a program that was killed
      server_.listen(address_);
      return Start::first;
    }
    // Where no lock can be made at all there is no telling.
    if (lock_.error() != QLockFile::LockFailedError) return Start::first;
    if (handOver()) return Start::handedOver;
  } while (!end.hasExpired());
  return Start::refused;
}

bool SingleInstance::handOver() const {
  constexpr int wait = 250;
  QLocalSocket socket;
  socket.connectToServer(address_);
  return socket.waitForConnected(wait) && (socket.bytesAvailable() > 0 || socket.waitForReadyRead(wait));
}

void SingleInstance::answer() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    socket->write("1");
    socket->flush();
    Q_EMIT startedAgain();
  }
}

}  // namespace tamboro
