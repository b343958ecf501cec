#pragma once

#include <QObject>
#include <QUrl>
#include <functional>

#include "views/controls/FileViewer.h"

namespace tamboro {

/// The file manager that answers on the session bus (`org.freedesktop.FileManager1`), and the desktop's opener where
/// none does in time or there is no such bus.
class DesktopFileViewer : public QObject, public FileViewer {
  Q_OBJECT

 public:
  using Opener = std::function<void(const QUrl&)>;
  /// Without an opener, the desktop's.
  explicit DesktopFileViewer(Opener opener = nullptr, QObject* parent = nullptr);

  void showFolder(const std::filesystem::path& folder) override;

 private:
  Opener opener_;
};

/// The file address of a path whose bytes need not be UTF-8.
QByteArray fileAddress(const std::filesystem::path& path);

}  // namespace tamboro
