#include "views/tags/TagListEditorView.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "views/look/Look.h"
#include "views/look/LookStyle.h"
#include "views/tags/TagFieldList.h"

namespace tamboro {

TagListEditorView::TagListEditorView(RolandLibrary& store, QWidget* parent)
    : Sheet(QStringLiteral("tagEditor"), QStringLiteral("Edit Tags"), parent) {
  QPushButton* done = addHeader(windowTitle(), QStringLiteral("Done"));
  setControlLook(*done, ControlLook::prominent);
  done->setDefault(true);
  auto* list = new TagFieldList(store);
  column()->setContentsMargins(0, 0, 0, 0);
  column()->addWidget(list);
  setMinimumSize(Look::px(360), Look::px(420));
  list->edit(0);
}

}  // namespace tamboro
