#pragma once

#include <QCoreApplication>
#include <QMainWindow>
#include <stdexcept>

#include "audio/SamplePlayer.h"
#include "library/LibraryBench.h"
#include "views/window/ContentView.h"

namespace tamboro::bench {

struct NoPrompts : Prompts {
  void alert(QWidget*, const Alert&, std::function<void(std::size_t)>) override {}
  void chooseFolder(QWidget*, const FolderQuestion&,
                    std::function<void(std::optional<std::filesystem::path>)>) override {}
  void chooseFiles(QWidget*, const FilesQuestion&, std::function<void(std::vector<std::filesystem::path>)>) override {}
};

/// Delivers what is queued, what that queues, and the painting that comes of it.
inline void settle() {
  for (int turn = 0; turn < 3; ++turn)
    QCoreApplication::processEvents();
}

/// Paints a widget with all that is in it: its own repainting leaves out the opaque parts.
inline void repaintAll(QWidget& widget) {
  widget.update();
  for (QWidget* part : widget.findChildren<QWidget*>())
    part->update();
  settle();
}

/// The main window with a card open and a kit selected.
struct CardWindow : DiskStore {
  CardWindow(const Path& card, const Path& home) : DiskStore(home) {
    window.setCentralWidget(new ContentView(library, player, *files, defaults, prompts));
    window.resize(1200, 800);
    library.load(card);
    window.show();
    library.setSelectedKitSlot(library.kits().front().slot);
    settle();
  }
  template<class Kind = QWidget>
  Kind& find(const char* name) {
    auto* found = window.findChild<Kind*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no ") + name);
    return *found;
  }

  SamplePlayer player;
  NoPrompts prompts;
  QMainWindow window;
};

/// Counts what is painted of a widget: a step whose result nobody painted says nothing.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
  int count = 0;
};

/// Each prints its line (name, measured, limit) and returns whether the limit is kept. `card` is the root of a card of
/// 100 kits and 10,000 samples, `manyKits` of one of 1,000 kits; `place` is a folder to work in.
bool measureKitSelection(const Path& card, const Path& place);
bool measureEffectStep(const Path& card, const Path& place);
bool measureKitScrolling(const Path& manyKits, const Path& place);
bool measureSampleSearch(const Path& card, const Path& place);
bool measureSampleScrolling(const Path& card, const Path& place);
bool measureFirstPaint(const Path& card, const Path& place);

}  // namespace tamboro::bench
