#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QStandardPaths>
#include <algorithm>
#include <cstring>
#include <iterator>

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

/// Whether all that is asked for is a text, which needs no display.
bool asksForText(int argc, char** argv) {
  constexpr const char* questions[] = {"-h", "--help", "-v", "--version"};
  return argc == 2 && std::any_of(std::begin(questions), std::end(questions),
                                  [&](const char* question) { return std::strcmp(argv[1], question) == 0; });
}

void readCommandLine() {
  QCoreApplication::setApplicationName(QStringLiteral("tamboro"));
  QCoreApplication::setApplicationVersion(QStringLiteral(TAMBORO_VERSION));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Edits the content of a Roland SPD-SX sampling pad."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(*QCoreApplication::instance());
}

}  // namespace

int main(int argc, char** argv) {
  if (asksForText(argc, argv)) {
    const QCoreApplication application(argc, argv);
    readCommandLine();
  }
  QApplication application(argc, argv);
  readCommandLine();
  QApplication::setApplicationDisplayName(QStringLiteral("Tamboro"));
  QApplication::setDesktopFileName(QStringLiteral("org.tamboro.Tamboro"));
  const QString icon = QApplication::desktopFileName();
  QApplication::setWindowIcon(QIcon::fromTheme(icon, QIcon(QStringLiteral(":/%1.svg").arg(icon))));
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
