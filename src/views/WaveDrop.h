#pragma once

#include <QMimeData>
#include <QObject>
#include <filesystem>
#include <functional>
#include <vector>

class QDropEvent;
class QWidget;

namespace tamboro {

/// The files that a drag carries whose extension, in lower case, is "wav". The disk isn't asked.
std::vector<std::filesystem::path> droppedWaves(const QMimeData& data);

/// Lets a list take sound files wherever they are dropped on it, also over a name that is being edited. A card folder
/// is for the window.
class WaveDrop : public QObject {
  Q_OBJECT

 public:
  /// `dropped` is called as an event of its own: the source of the drag isn't kept waiting for the imports.
  WaveDrop(QWidget& list, std::function<void(std::vector<std::filesystem::path>)> dropped);
  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  /// A drag that would be taken hovers over the list, or doesn't any more.
  void targetedChanged(bool isTargeted);

 private:
  bool answer(QDropEvent& event, const QWidget& over);
  void setTargeted(bool isTargeted);

  QWidget& list_;
  std::function<void(std::vector<std::filesystem::path>)> dropped_;
  bool isTargeted_ = false;
};

}  // namespace tamboro
