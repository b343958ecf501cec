#pragma once

#include <QAbstractButton>
#include <QDropEvent>
#include <QMimeData>
#include <fstream>

#include "support/TemporaryFolder.h"
#include "views/kits/KitEditorView.h"
#include "views/pads/PadCell.h"
#include "views/window/MainWindow.h"

namespace tamboro::test {

/// A kit with that many pads, self-closed or of this one element, and these elements before them.
inline std::string kitFile(int padCount, const std::string& pad = "<PadPrm/>", const std::string& elements = "") {
  std::string text = "<KitPrm>\n" + elements;
  for (int index = 0; index < padCount; ++index)
    text += "\t" + pad + "\n";
  return text + "</KitPrm>\n";
}

/// A name's cells, one code point each.
inline std::string nameCells(const std::string& prefix, const std::u32string& name) {
  std::string text;
  for (std::size_t cell = 0; cell < name.size(); ++cell) {
    const std::string element = prefix + std::to_string(cell);
    text += "<" + element + ">" + std::to_string(static_cast<unsigned>(name[cell])) + "</" + element + ">";
  }
  return text;
}

/// The main window with a card open and one of its kits in the editor.
struct KitEditor : MainWindow {
  RolandLibrary& library = store.library;

  explicit KitEditor(Slot slot = 1, const Tree& card = sampleCard()) {
    show();
    store.open(card);
    select(slot);
  }
  void select(std::optional<Slot> slot) {
    library.setSelectedKitSlot(slot);
    settle();
  }
  PadCell& pad(int index) { return find<PadCell>(qPrintable(QStringLiteral("pad%1").arg(index))); }
  std::string elementText(int pad, std::string_view element) const {
    return std::to_string(store.library.kit(*store.library.selectedKitSlot())->pad(pad)->node.intValue(element, -99));
  }
  void key(Qt::Key key) {
    QTest::keyClick(window.focusWidget(), key);
    settle();
  }
};

/// Drags a text onto a widget and lets go; true if the drop was taken.
inline bool dropText(QWidget& target, const QString& text) {
  QMimeData data;
  if (!text.isNull()) data.setText(text);
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&target, &drop);
  return drop.isAccepted();
}

}  // namespace tamboro::test
