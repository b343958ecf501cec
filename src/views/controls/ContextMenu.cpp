#include "views/controls/ContextMenu.h"

#include "views/controls/Labels.h"
#include "views/look/LookStyle.h"

namespace tamboro {

ContextMenu::ContextMenu(const QString& objectName, const QString& accessibleName, QWidget* parent) : QMenu(parent) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setAttribute(Qt::WA_DeleteOnClose);
  setToolTipsVisible(true);
}

QAction* ContextMenu::add(const char* objectName, const QString& title, const QString& help,
                          const std::function<void()>& run) {
  QAction* entry = addAction(title);
  entry->setObjectName(QLatin1String(objectName));
  entry->setToolTip(help);
  entry->setWhatsThis(spokenKeys(help));
  connect(entry, &QAction::triggered, parent(), run);
  return entry;
}

QAction* ContextMenu::addDestructive(const char* objectName, const QString& title, const QString& help,
                                     const std::function<void()>& run) {
  QAction* entry = add(objectName, title, help, run);
  setControlLook(*entry, ControlLook::destructive);
  return entry;
}

}  // namespace tamboro
