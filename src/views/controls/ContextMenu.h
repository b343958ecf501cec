#pragma once

#include <QMenu>
#include <functional>

namespace tamboro {

/// The menu of a row or a pad, which goes when it closes. Its entries tell what they do as tooltips and to assistive
/// tools.
class ContextMenu : public QMenu {
  Q_OBJECT

 public:
  /// Stands over the owner's window, where assistive tools look for it, and goes with the owner.
  ContextMenu(const QString& objectName, const QString& accessibleName, QWidget* owner);

  /// `run` lives no longer than the owner.
  QAction* add(const char* objectName, const QString& title, const QString& help, const std::function<void()>& run);
  QAction* addDestructive(const char* objectName, const QString& title, const QString& help,
                          const std::function<void()>& run);
  QMenu* addSubmenu(const char* objectName, const QString& title, const QString& help);

 private:
  QWidget* owner_;
};

}  // namespace tamboro
