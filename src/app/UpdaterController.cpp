#include "app/UpdaterController.h"

#include "views/controls/Prompts.h"

namespace tamboro {

UpdaterController::UpdaterController(Prompts& prompts, QObject* parent) : QObject(parent), prompts_(prompts) {}

void UpdaterController::checkForUpdates(QWidget* window) {
  prompts_.alert(window,
                 {.title = QStringLiteral("Check for Updates"),
                  .text = QStringLiteral("This build of Tamboro has no update source. New versions come the way this "
                                         "one came.")},
                 [](std::size_t) {});
}

}  // namespace tamboro
