#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>

namespace tamboro {

namespace {

QString text(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

/// Sockets have short paths: the folder's own can be too long. In the user's runtime folder, which nobody else enters;
/// where there is none, among the temporary files.
QString addressOf(const QString& folder) {
  const QByteArray hash = QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha256).toHex().first(16);
  const QString name = QStringLiteral("tamboro-") + QLatin1String(hash);
  const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return QDir(runtime).isAbsolute() && QFileInfo(runtime).isWritable() ? runtime + QLatin1Char('/') + name : name;
}

/// What a program says that is ours, and no other that a stale address may lead to.
constexpr QByteArrayView greeting("tamboro");

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
      // With the place ours, what stands at the address was left by a program that was killed.
      QLocalServer::removeServer(address_);
      if (!server_.listen(address_))
        qWarning("tamboro: no second start will reach this one: %s", qPrintable(server_.errorString()));
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
  if (!socket.waitForConnected(wait)) return false;
  while (socket.bytesAvailable() < greeting.size())
    if (!socket.waitForReadyRead(wait)) return false;
  return socket.read(greeting.size()) == greeting;
}

void SingleInstance::answer() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    socket->write(greeting.data(), greeting.size());
    socket->flush();
    Q_EMIT startedAgain();
  }
}

}  // namespace tamboro
