#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>

#include "app/FeedFetcher.h"
#include "app/UpdateFeed.h"
#include "platform/Defaults.h"
#include "platform/RepeatingTimer.h"
#include "views/controls/Prompts.h"

namespace tamboro {

class CheckingSheet;

/// What the update check needs; all outlive it.
struct UpdaterServices {
  Prompts& prompts;
  Defaults& defaults;
  Timers& timers;
  FeedFetcher& fetcher;
  QUrl feed;        ///< empty: this build has no update source, and nothing is ever sent
  QString version;  ///< of this build
  std::function<void(const QUrl&)> openPage;
  std::function<qint64()> now;  ///< seconds since 1970
};

/// Looks for newer versions: at most once a day by itself, and then speaks only of a version it hasn't spoken of yet;
/// by hand it always answers. Downloads and installs nothing.
class UpdaterController : public QObject {
  Q_OBJECT

 public:
  static const QString lastCheckKey;    ///< integer, seconds since 1970; failed checks count too
  static const QString toldVersionKey;  ///< bytes, the newest version's text that was shown

  /// Starts at once: what is due is asked from the event loop.
  explicit UpdaterController(UpdaterServices services, QObject* parent = nullptr);

  /// The window over which the answers stand.
  void attach(QWidget* window) { window_ = window; }
  void checkForUpdates();

 private:
  void checkIfDue();
  void check();
  void finish(const FeedAnswer& answer);
  void showChecking();
  void tellNews(const UpdateItem& item, bool isByHand);
  void tell(const QString& title, const QString& text);

  UpdaterServices services_;
  QPointer<QWidget> window_;
  std::unique_ptr<RepeatingTimer> timer_;
  bool isChecking_ = false;
  bool isByHand_ = false;
  QPointer<CheckingSheet> checking_;
};

}  // namespace tamboro
