#pragma once

#include <QObject>

class QWidget;

namespace tamboro {

class Prompts;

/// Looks for newer versions. A build without the address of an update feed says so when asked.
class UpdaterController : public QObject {
  Q_OBJECT

 public:
  explicit UpdaterController(Prompts& prompts, QObject* parent = nullptr);
  void checkForUpdates(QWidget* window);

 private:
  Prompts& prompts_;
};

}  // namespace tamboro
