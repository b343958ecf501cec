#include <QApplication>
#include <QStandardPaths>

#include "app/Application.h"
#include "app/SingleInstance.h"
#include "views/look/LookStyle.h"

namespace {

/// Long enough for a running program to answer, short enough for whoever started this one.
constexpr std::chrono::seconds patience{5};

int tellThatItRuns() {
  tamboro::DesktopPrompts prompts;
  prompts.alert(nullptr,
                {.title = QStringLiteral("Tamboro is already running"),
                 .text = QStringLiteral("It may still be writing to the card. Start it again in a moment.")},
                [](std::size_t) { QApplication::quit(); });
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tamboro"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tamboro"));
  QApplication::setDesktopFileName(QStringLiteral("org.tamboro.Tamboro"));
  tamboro::LookStyle::install(application);
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  tamboro::SingleInstance instance(tamboro::pathOf(data) / "tamboro");
  const auto start = instance.claim(patience);
  if (start == tamboro::SingleInstance::Start::handedOver) return 0;
  if (start == tamboro::SingleInstance::Start::refused) return tellThatItRuns();
  tamboro::Application tamboro;
  QObject::connect(&instance, &tamboro::SingleInstance::startedAgain, &tamboro,
                   [&] { tamboro.appDelegate().applicationShouldHandleReopen(false); });
  tamboro.showMainWindow();
  return QApplication::exec();
}
