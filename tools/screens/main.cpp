#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMainWindow>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <cstdio>

#include "app/Application.h"
#include "views/controls/DisclosureGroup.h"
#include "views/lists/RowList.h"
#include "views/look/Look.h"
#include "views/look/LookStyle.h"

namespace {

using namespace tamboro;

QString q(const char* text) {
  return QString::fromUtf8(text);
}

/// The running program, whose screens are opened one after another and painted into files. Needs no display.
class Screens {
 public:
  Screens(const QSize& size, QString prefix) : prefix_(std::move(prefix)) {
    application_.showMainWindow();
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->objectName() == q("mainWindow")) window_ = qobject_cast<QMainWindow*>(widget);
    window_->resize(size);
    settle();
  }

  void takeAll() {
    if (!application_.library().isLoaded()) return take("welcome");
    RowList& kits = child<RowList>("kitList");
    take("main-window");
    for (auto* group : window_->findChildren<DisclosureGroup*>())
      group->setExpanded(true);
    scroll("padDetail");
    take("pad");
    scroll("kitEffects");
    take("effects");
    asked("tags", "tagsButton");
    asked("new-kit", "newKitButton");
    scroll("padDetail");
    asked("apply-to-all", "applyToAllButton");
    selectSounds();
    asked("batch-rename", "renameSelectedButton");
    fromMenu("shortcuts", "keyboardShortcuts");
    fromMenu("about", "about");
    fromMenu("guide", "guide");
    fromMenu("preferences", "preferences");
    kits.setFocus();
    kits.setCurrentIndex(kits.model()->index(3, 0));
    QKeyEvent remove(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(&kits, &remove);
    taken("delete-kit");
  }

 private:
  template<class Widget>
  Widget& child(const char* name) {
    auto* found = window_->findChild<Widget*>(q(name));
    if (!found) qFatal("no %s", name);
    return *found;
  }

  static void settle() {
    constexpr int aMoment = 400;  // milliseconds: queued refreshes, and the toolkit's own timers
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < aMoment)
      QApplication::processEvents(QEventLoop::AllEvents, 20);
  }

  void scroll(const char* section) {
    settle();
    auto& area = child<QScrollArea>("kitScroll");
    const QPoint place = child<QWidget>(section).mapTo(area.widget(), QPoint());
    area.verticalScrollBar()->setValue(place.y());
  }

  void selectSounds() {
    auto& list = child<RowList>("waveList");
    list.setFocus();
    for (int row = 0; row < 4; ++row)
      list.selectionModel()->select(list.model()->index(row, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
    Q_EMIT list.selectionEdited();
    settle();
  }

  void asked(const char* name, const char* button) {
    child<QPushButton>(button).click();
    taken(name);
  }

  void fromMenu(const char* name, const char* row) {
    child<QAction>(row).trigger();
    taken(name);
  }

  /// With what has opened, which closes then.
  void taken(const char* name) {
    take(name);
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget != window_ && widget->isVisible()) widget->close();
    settle();
  }

  void take(const char* name) {
    settle();
    QPixmap picture = window_->grab();
    QPainter painter(&picture);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget == window_ || !widget->isVisible() || !qobject_cast<QDialog*>(widget)) continue;
      // Without a window manager nobody has put it over the middle.
      const QPoint place((window_->width() - widget->width()) / 2, (window_->height() - widget->height()) / 2);
      painter.setPen(Look::current().separator);
      painter.fillRect(window_->rect(), QColor(0, 0, 0, 60));
      painter.drawPixmap(place, widget->grab());
      painter.drawRect(QRect(place, widget->size()).adjusted(-1, -1, 0, 0));
    }
    painter.end();
    const QString file = prefix_.arg(q(name));
    if (!picture.save(file)) qFatal("%s can't be written", qPrintable(file));
    std::puts(qPrintable(file));
  }

  Application application_;
  QMainWindow* window_ = nullptr;
  QString prefix_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(q("tamboro"));
  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addOptions({{q("size"), q("Of the window."), q("WIDTHxHEIGHT"), q("1200x800")},
                     {q("look"), q("light or dark."), q("look"), q("light")},
                     {q("font"), q("Points of the usual text; 0: the system's."), q("points"), q("0")}});
  parser.addPositionalArgument(q("FILES"), q("Names of the pictures, with %1 for the screen."));
  parser.process(application);
  const QStringList size = parser.value(q("size")).split(QLatin1Char('x'));
  if (parser.positionalArguments().size() != 1 || size.size() != 2) parser.showHelp(2);
  if (const int points = parser.value(q("font")).toInt()) {
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
  }
  LookStyle::install(application);
  Screens screens({size[0].toInt(), size[1].toInt()}, parser.positionalArguments().first());
  LookStyle::apply(parser.value(q("look")) == q("dark") ? Look::dark() : Look::light());
  screens.takeAll();
}
