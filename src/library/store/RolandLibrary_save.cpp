#include <set>
#include <utility>

#include "library/LibraryError.h"
#include "library/saving/ExportJob.h"
#include "library/store/RolandLibrary.h"

namespace tamboro {
namespace {

template<class Map, class Key>
void copyEntry(const Map& from, const Key& key, Map& to) {
  if (const auto found = from.find(key); found != from.end()) to.insert(*found);
}

}  // namespace

void RolandLibrary::exportKit(Slot slot, const Path& destination, Completion done) {
  const Kit* kit = this->kit(slot);
  if (!kit) return done(nullptr);
  if (!card_.root) return done(libraryError(LibraryError::Case::notLoaded));
  auto values =
      std::make_shared<KitExport>(KitExport{*card_.root, card_.serial, card_.known, destination, *kit, {}, {}, {}, {}});
  if (const auto document = card_.kitDocs.find(slot); document != card_.kitDocs.end())
    values->kitDoc = document->second;
  std::set<WaveId> used;
  for (const Pad& pad : kit->pads()) {
    for (const WaveId id : {pad.wave(), pad.subWave()}) {
      if (id >= 0) used.insert(id);
    }
  }
  for (const Wave& wave : card_.waves) {
    if (!used.contains(wave.id())) continue;
    values->waves.push_back(wave);
    copyEntry(card_.waveDocs, wave.id(), values->waveDocs);
    copyEntry(card_.stagedAudioFiles, wave.id(), values->stagedAudioFiles);
  }
  staging_.hold({values, &values->stagedAudioFiles});
  services_.jobs.attempt([values, &files = services_.files] { exportKitJob(*values, files); },
                         // Held for as long as the job: what is staged among them stays.
                         [values, done = std::move(done)](const std::exception_ptr& error) { done(error); });
}

}  // namespace tamboro
