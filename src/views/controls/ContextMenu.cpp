#include "views/controls/ContextMenu.h"

#include <QCursor>
#include <QStyle>
#include <QTimer>
#include <QToolTip>

#include "views/controls/Labels.h"
#include "views/look/LookStyle.h"

namespace tamboro {

ContextMenu::ContextMenu(const QString& objectName, const QString& accessibleName, QWidget* owner)
    : QMenu(owner->window()), owner_(owner) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setAttribute(Qt::WA_DeleteOnClose);
  setToolTipsVisible(true);
  connect(owner, &QObject::destroyed, this, &QMenu::close);
}

QAction* ContextMenu::add(const char* objectName, const QString& title, const QString& help,
                          const std::function<void()>& run) {
  QAction* entry = addAction(title);
  entry->setObjectName(QLatin1String(objectName));
  entry->setToolTip(help);
  entry->setWhatsThis(spokenKeys(help));
  connect(entry, &QAction::triggered, owner_, run);
  return entry;
}

QAction* ContextMenu::addDestructive(const char* objectName, const QString& title, const QString& help,
                                     const std::function<void()>& run) {
  QAction* entry = add(objectName, title, help, run);
  setControlLook(*entry, ControlLook::destructive);
  return entry;
}

QMenu* ContextMenu::addSubmenu(const char* objectName, const QString& title, const QString& help) {
  QMenu* submenu = addMenu(title);
  submenu->setObjectName(QLatin1String(objectName));
  submenu->setAccessibleName(title);
  QAction* entry = submenu->menuAction();
  entry->setToolTip(help);
  entry->setWhatsThis(spokenKeys(help));
  // The open submenu has the mouse, so that no help text would come for the row that it belongs to.
  connect(submenu, &QMenu::aboutToShow, this, [this, submenu, entry] {
    QTimer::singleShot(style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay), submenu, [this, submenu, entry] {
      const QPoint pointer = QCursor::pos();
      if (submenu->isVisible() && actionAt(mapFromGlobal(pointer)) == entry)
        QToolTip::showText(pointer, entry->toolTip(), this, actionGeometry(entry));
    });
  });
  return submenu;
}

}  // namespace tamboro
