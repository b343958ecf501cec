#include "views/samples/WaveImports.h"

#include <QGuiApplication>
#include <QPointer>
#include <ranges>
#include <utility>

#include "library/LibraryError.h"
#include "library/store/RolandLibrary.h"
#include "views/samples/WaveListRules.h"

namespace tamboro {

namespace {

/// A name's bytes need not be UTF-8.
std::string sampleName(const Path& file) {
  return QString::fromStdString(file.stem().native()).toStdString();
}

/// Hidden ones are no sounds of the user's: a Mac puts one beside each file it copies to a stick.
std::vector<SoundSource> soundsIn(const FileSystem& files, const Path& folder) {
  std::vector<SoundSource> found;
  for (const std::string& name : files.list(folder)) {
    if (name.starts_with('.')) continue;
    const Path path = folder / name;
    const bool isFolder = files.entryStatus(path).kind == FileKind::folder;
    if (isFolder || isWaveName(path)) found.push_back({path, isFolder});
  }
  return found;
}

}  // namespace

bool isWaveName(const Path& path) {
  return QString::fromStdString(path.extension().native()).toLower() == QLatin1String(".wav");
}

WaveImports::WaveImports(RolandLibrary& store, const FileSystem& files, QObject* parent)
    : QObject(parent), store_(store), files_(files) {
  connect(&store, &RolandLibrary::published, this, [this](RolandLibrary::Property property) {
    if (property == RolandLibrary::Property::rootPath) giveUp();  // each load tells it, also of the same card
  });
  connect(qApp, &QGuiApplication::lastWindowClosed, this, &WaveImports::giveUp);
}

void WaveImports::start(std::vector<SoundSource> sources, std::int64_t tag) {
  if (sources.empty()) return;
  if (!isRunning()) done_ = total_ = 0;
  for (SoundSource& source : sources) {
    if (!source.isFolder) ++total_;
    unlisted_.push_back({std::move(source), tag});
  }
  if (!isImporting_) queueNext();
  Q_EMIT progressChanged();
}

/// Never from the end of the one before: files that are refused at once would pile up on the stack.
void WaveImports::queueNext() {
  if (isQueued_ || (unlisted_.empty() && waiting_.empty())) return;
  isQueued_ = true;
  QMetaObject::invokeMethod(this, &WaveImports::step, Qt::QueuedConnection);
}

void WaveImports::step() {
  isQueued_ = false;
  for (; !unlisted_.empty(); unlisted_.pop_front()) {
    if (unlisted_.front().source.isFolder) return listNext();
    waiting_.push_back(std::move(unlisted_.front()));
  }
  if (!waiting_.empty()) importNext();
}

void WaveImports::listNext() {
  const Waiting folder = std::move(unlisted_.front());
  unlisted_.pop_front();
  try {
    const std::vector<SoundSource> found = soundsIn(files_, folder.source.path);
    for (const SoundSource& source : std::ranges::reverse_view(found)) {
      if (!source.isFolder) ++total_;
      unlisted_.push_front({source, folder.tag});
    }
  } catch (const FileError&) {
    fail(folder.source.path, std::current_exception());
  }
  queueNext();
  if (!isRunning()) endBatch();
  Q_EMIT progressChanged();
}

void WaveImports::importNext() {
  const Waiting file = std::move(waiting_.front());
  waiting_.pop_front();
  isImporting_ = true;
  isGivenUp_ = false;
  store_.importWave(file.source.path, sampleName(file.source.path), file.tag,
                    [alive = QPointer<WaveImports>(this), path = file.source.path](const std::exception_ptr& error) {
                      if (!alive) return;
                      if (error && !alive->isGivenUp_) alive->fail(path, error);
                      alive->finish();
                    });
}

void WaveImports::finish() {
  isImporting_ = false;
  ++done_;
  queueNext();
  if (!isRunning()) endBatch();
  Q_EMIT progressChanged();
}

void WaveImports::fail(const Path& path, const std::exception_ptr& error) {
  failures_.push_back(QString::fromStdString(path.filename().native()));
  lastFailure_ = errorText(error);
}

void WaveImports::endBatch() {
  const std::vector<QString> failures = std::exchange(failures_, {});
  if (!failures.empty())
    Q_EMIT failed(waveImportFailureText(failures, lastFailure_));
  else if (total_ == 0)
    Q_EMIT foundNothing();
}

void WaveImports::giveUp() {
  isGivenUp_ = true;
  failures_.clear();
  if (!isRunning()) return;
  unlisted_.clear();
  waiting_.clear();
  total_ = done_ + (isImporting_ ? 1 : 0);
  Q_EMIT progressChanged();
}

}  // namespace tamboro
