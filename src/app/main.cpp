#include <QApplication>

#include "app/Application.h"
#include "views/look/LookStyle.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tamboro"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tamboro"));
  QApplication::setDesktopFileName(QStringLiteral("org.tamboro.Tamboro"));
  tamboro::LookStyle::install(application);
  tamboro::Application tamboro;
  tamboro.showMainWindow();
  return QApplication::exec();
}
