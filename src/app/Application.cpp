#include "app/Application.h"

#include <QApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QFile>
#include <QScreen>
#include <QStandardPaths>

#include "app/AboutPanel.h"
#include "app/MenuBar.h"
#include "app/SessionHold.h"
#include "app/SettingsWindow.h"
#include "app/StoreUndoKeys.h"
#include "app/WindowPlace.h"
#include "platform/EventTurns.h"
#include "platform/RealFileSystem.h"
#include "platform/ThreadJobs.h"
#include "views/controls/BringToFront.h"
#include "views/help/GuideWindow.h"
#include "views/look/Look.h"
#include "views/look/LookStyle.h"
#include "views/settings/PreferencesView.h"
#include "views/window/ContentView.h"

namespace tamboro {

namespace {

constexpr int titleBarRoom = 48;

Path standardFolder(QStandardPaths::StandardLocation location) {
  return pathOf(QStandardPaths::writableLocation(location));
}

}  // namespace

Application::Application()
    : defaults_(makeUserDefaults()),
      timers_(makeEventLoopTimers()),
      feedFetcher_(QStringLiteral(TAMBORO_VERSION)),
      appDelegate_({prompts_, *defaults_, *timers_, feedFetcher_, QUrl(QStringLiteral(TAMBORO_UPDATE_FEED)),
                    QStringLiteral(TAMBORO_VERSION), [](const QUrl& page) { QDesktopServices::openUrl(page); },
                    &QDateTime::currentSecsSinceEpoch}),
      files_(makeRealFileSystem()),
      jobs_(std::make_unique<SessionHold>(makeThreadJobs())),
      folderPanel_(*files_),
      library_(std::make_unique<RolandLibrary>(
          LibraryServices{*files_, *defaults_, *jobs_, *timers_, folderPanel_,
                          standardFolder(QStandardPaths::GenericDataLocation) / "tamboro" / "staging",
                          standardFolder(QStandardPaths::DocumentsLocation) / "Tamboro Backup"})) {
  makeWindow();
  // Gone with the window, before the store whose undo they serve.
  new EventTurns(library_->undoManager(), window_.get());
  new StoreUndoKeys(library_->undoManager(), window_.get());
  // However the program ends, a running save or export comes to its end first. Nobody is asked.
  connect(qApp, &QApplication::aboutToQuit, this, &Application::finish);
  connect(&endSignals_, &EndSignals::asked, qApp, &QApplication::quit);
  // The end of the session: it goes on when this returns.
  connect(qApp, &QApplication::commitDataRequest, this, &Application::finish, Qt::DirectConnection);
  connect(&scheme_, &ColourScheme::changed, this, &Application::followScheme);
  if (scheme_.wish() != ColourScheme::Wish::unknown) followScheme();  // else it is the system's look already
  qApp->installEventFilter(this);
}

Application::~Application() = default;

void Application::makeWindow() {
  window_ = std::make_unique<QMainWindow>();
  window_->setObjectName(QStringLiteral("mainWindow"));
  window_->setWindowTitle(QStringLiteral("Tamboro"));
  auto* menus = new MenuBar(*library_);
  window_->setMenuBar(menus);
  auto* content = content_ = new ContentView(*library_, player_, *files_, *defaults_, prompts_);
  window_->setCentralWidget(content);
  connect(menus, &MenuBar::kitListToggled, content, &ContentView::setKitListShown);
  connect(content, &ContentView::kitListShownChanged, menus, &MenuBar::showKitListShown);
  connect(menus, &MenuBar::searchRequested, content, &ContentView::search);
  connect(menus, &MenuBar::columnRequested, content, &ContentView::walkColumns);
  connect(menus, &MenuBar::aboutRequested, this, &Application::showAbout);
  connect(menus, &MenuBar::guideRequested, this, &Application::showGuide);
  connect(menus, &MenuBar::preferencesRequested, this, &Application::showPreferences);
  UpdaterController& updater = appDelegate_.updaterController();
  updater.attach(window_.get());
  connect(menus, &MenuBar::checkForUpdatesRequested, &updater, &UpdaterController::checkForUpdates);
  folderPanel_.attach(window_.get(), [this](const Path& folder) { return library_->resolveRoot(folder).has_value(); });
  // The title bar, whose height only the desktop knows, and later than now.
  const QSize room = window_->screen()->availableSize() - QSize(0, titleBarRoom);
  window_->resize(QSize(Look::px(1200), Look::px(800)).boundedTo(room));
  restoreWindowPlace(*defaults_, *window_, content->columns());
}

void Application::finish() {
  rememberWindowPlace(*defaults_, *window_, content_->columns());
  jobs_->waitForAll();
}

void Application::followScheme() {
  switch (scheme_.wish()) {
    case ColourScheme::Wish::light:
      return LookStyle::apply(Look::light());
    case ColourScheme::Wish::dark:
      return LookStyle::apply(Look::dark());
    case ColourScheme::Wish::unknown:
      return LookStyle::apply(LookStyle::systemLook());
  }
}

void Application::showMainWindow() {
  window_->show();
  appDelegate_.applicationDidFinishLaunching();
}

void Application::showAbout() {
  auto* panel =
      new AboutPanel(aboutTexts(QStringLiteral(TAMBORO_VERSION), QStringLiteral(TAMBORO_BUILD_NUMBER)), window_.get());
  panel->open();
}

void Application::showPreferences() {
  if (!settings_)
    settings_ =
        new SettingsWindow(new PreferencesView(*library_, *files_, *jobs_, fileViewer_, prompts_), window_.get());
  bringToFront(*settings_);
}

void Application::showGuide() {
  if (!guide_) {
    QFile file(QStringLiteral(":/GUIDE.md"));
    const bool isOpen = file.open(QIODevice::ReadOnly);
    guide_ = new GuideWindow(isOpen ? QString::fromUtf8(file.readAll()) : QString(), window_.get());
  }
  bringToFront(*guide_);
}

bool Application::eventFilter(QObject* watched, QEvent* event) {
  // The desktop's light or dark can change while the program runs.
  if (event->type() == QEvent::ThemeChange && watched == window_.get()) followScheme();
#ifdef Q_OS_MACOS
  // Clicking the running program's icon in the Dock.
  if (event->type() == QEvent::ApplicationActivate && window_)
    appDelegate_.applicationShouldHandleReopen(!window_->isMinimized());
#endif
  return QObject::eventFilter(watched, event);
}

}  // namespace tamboro
