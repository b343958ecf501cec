#include "views/WaveImports.h"

#include <QGuiApplication>
#include <QPointer>

#include "library/LibraryError.h"
#include "library/RolandLibrary.h"

namespace tamboro {

namespace {

/// A name's bytes need not be UTF-8.
std::string sampleName(const Path& file) {
  return QString::fromStdString(file.stem().native()).toStdString();
}

}  // namespace

WaveImports::WaveImports(RolandLibrary& store, QObject* parent) : QObject(parent), store_(store) {
  connect(&store, &RolandLibrary::published, this, [this](RolandLibrary::Property property) {
    if (property == RolandLibrary::Property::rootPath) giveUp();  // each load tells it, also of the same card
  });
  connect(qApp, &QGuiApplication::lastWindowClosed, this, &WaveImports::giveUp);
}

void WaveImports::start(std::vector<Path> files, std::int64_t tag) {
  if (files.empty()) return;
  if (!isRunning()) done_ = total_ = 0;
  total_ += static_cast<int>(files.size());
  for (Path& file : files)
    waiting_.push_back({std::move(file), tag});
  if (!isImporting_) queueNext();
  Q_EMIT progressChanged();
}

/// Never from the end of the one before: files that are refused at once would pile up on the stack.
void WaveImports::queueNext() {
  if (isQueued_ || waiting_.empty()) return;
  isQueued_ = true;
  QMetaObject::invokeMethod(this, &WaveImports::importNext, Qt::QueuedConnection);
}

void WaveImports::importNext() {
  isQueued_ = false;
  if (waiting_.empty()) return;
  const File file = std::move(waiting_.front());
  waiting_.pop_front();
  isImporting_ = true;
  isGivenUp_ = false;
  store_.importWave(file.path, sampleName(file.path), file.tag,
                    [alive = QPointer<WaveImports>(this)](const std::exception_ptr& error) {
                      if (alive) alive->finish(error);
                    });
}

void WaveImports::finish(const std::exception_ptr& error) {
  isImporting_ = false;
  ++done_;
  queueNext();
  if (error && !isGivenUp_) Q_EMIT failed(errorText(error));
  Q_EMIT progressChanged();
}

void WaveImports::giveUp() {
  isGivenUp_ = true;
  if (waiting_.empty()) return;
  total_ -= static_cast<int>(waiting_.size());
  waiting_.clear();
  Q_EMIT progressChanged();
}

}  // namespace tamboro
