#include "views/help/GuideWindow.h"

#include <QShortcut>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "views/look/Look.h"

namespace tamboro {

namespace {

/// The column that reads well, with its margins.
constexpr int firstWidth = 620;
constexpr int firstHeight = 720;
constexpr int margin = 24;

}  // namespace

GuideWindow::GuideWindow(const QString& markdown, QWidget* mainWindow) : QDialog(mainWindow) {
  setObjectName(QStringLiteral("guideWindow"));
  setWindowTitle(QStringLiteral("Guide"));
  setAccessibleName(windowTitle());
  auto* text = new QTextBrowser;
  text->setObjectName(QStringLiteral("guideText"));
  text->setAccessibleName(QStringLiteral("Guide"));
  text->viewport()->setAccessibleName(text->accessibleName());
  text->setOpenExternalLinks(true);
  text->setFrameShape(QFrame::NoFrame);
  text->document()->setDocumentMargin(Look::px(margin));
  text->setMarkdown(markdown);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(text);
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::close);
  resize(QSize(Look::px(firstWidth), Look::px(firstHeight)).boundedTo(mainWindow ? mainWindow->size() : size()));
}

}  // namespace tamboro
