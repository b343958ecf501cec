#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <array>

namespace tamboro {

/// The signals that ask a program to end (SIGTERM, SIGHUP, SIGINT), as an event of the loop, so that it can end in
/// order. One at a time; a second signal while the program ends is heard and changes nothing.
class EndSignals : public QObject {
  Q_OBJECT

 public:
  explicit EndSignals(QObject* parent = nullptr);
  ~EndSignals() override;

 Q_SIGNALS:
  void asked();

 private:
  std::array<int, 2> sockets_{-1, -1};
};

}  // namespace tamboro
