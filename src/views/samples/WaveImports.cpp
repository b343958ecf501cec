#include "views/samples/WaveImports.h"

#include <QGuiApplication>
#include <utility>

#include "library/LibraryError.h"
#include "library/store/RolandLibrary.h"
#include "views/samples/WaveListRules.h"

namespace tamboro {

WaveImports::WaveImports(RolandLibrary& store, QObject* parent) : QObject(parent), store_(store) {
  connect(&store, &RolandLibrary::published, this, [this](RolandLibrary::Property property) {
    if (property == RolandLibrary::Property::imports) follow();
  });
  connect(qApp, &QGuiApplication::lastWindowClosed, this, [this] { store_.dropWaitingImports(); });
}

void WaveImports::start(std::vector<SoundSource> sources, std::int64_t tag) {
  store_.importSounds(std::move(sources), tag);
}

void WaveImports::follow() {
  const ImportBatch& batch = store_.imports();
  const bool hasEnded = std::exchange(isRunning_, batch.isRunning) && !batch.isRunning;
  Q_EMIT progressChanged();
  if (!hasEnded || batch.isDropped) return;
  std::vector<QString> names;
  for (const Path& path : batch.failed)
    names.push_back(QString::fromStdString(path.filename().native()));
  if (!names.empty())
    Q_EMIT failed(waveImportFailureText(names, errorText(batch.lastError)));
  else if (batch.total() == 0)
    Q_EMIT foundNothing();
}

}  // namespace tamboro
