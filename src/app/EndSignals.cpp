#include "app/EndSignals.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace tamboro {

namespace {

constexpr std::array<int, 3> endSignals{SIGTERM, SIGHUP, SIGINT};
int writingEnd = -1;

void tell(int) {
  // All that a signal handler may do. A full socket has told it already.
  [[maybe_unused]] const ssize_t written = ::write(writingEnd, "e", 1);
}

void handle(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int number : endSignals)
    ::sigaction(number, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent) {
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets_.data()) != 0) return;
  writingEnd = sockets_[0];
  auto* notifier = new QSocketNotifier(sockets_[1], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    std::array<char, 16> told{};
    while (::read(sockets_[1], told.data(), told.size()) > 0) {
    }
    Q_EMIT asked();
  });
  handle(&tell);
}

EndSignals::~EndSignals() {
  if (sockets_[0] < 0) return;
  handle(SIG_DFL);
  ::close(sockets_[0]);
  ::close(sockets_[1]);
}

}  // namespace tamboro
