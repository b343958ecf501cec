#include "library/saving/ExportJob.h"

#include <algorithm>

#include "library/CardPaths.h"
#include "library/FileCopy.h"
#include "library/contents/CardCheck.h"
#include "library/saving/SavePlan.h"

namespace tamboro {
namespace {

class KitExporter {
 public:
  KitExporter(const KitExport& values, FileSystem& files) : values_(values), files_(files) {}

  void run() {
    refuseCard();
    holdCard();
    makeFolders(files_, values_.destination);
    const SpdDocument document = kitDocument(values_.kit, values_.kitDoc ? &*values_.kitDoc : nullptr);
    const Path file = cardpaths::kitFile(values_.kit.slot);
    write(values_.destination / file.filename(), file, document);
    for (const Wave& wave : values_.waves) {
      writeParameters(wave);
      writeAudio(wave);
    }
  }

 private:
  // The place for a sample's audio on the card; nothing where it is staged or names no audio.
  static std::optional<Path> audioOnCard(const Wave& wave) {
    return wave.isPending ? std::nullopt : cardpaths::audioFile(wave);
  }

  void refuseCard() const {
    if (files_.resolved(values_.destination) != files_.resolved(values_.root)) return;
    throw FileError(std::make_error_code(std::errc::operation_not_permitted), values_.destination);
  }

  // Only where audio is needed from it: a kit of new samples can be exported without its card. Asked before anything is
  // written, and held, so that another card's audio does not get into the export.
  void holdCard() {
    const auto needsCard = [](const Wave& wave) { return audioOnCard(wave).has_value(); };
    if (std::ranges::none_of(values_.waves, needsCard)) return;
    requireSameCard(files_, values_.root, values_.serial, values_.known);
    card_ = files_.rooted(values_.root);
    requireSameCard(*card_, ".", values_.serial, values_.known);
  }

  // An export never writes the card's own file: a destination such as its KIT folder, or one that holds a link into
  // the card, would put unsaved edits there. On FAT a folder that is called Kit is that folder, too.
  void refuseOwnFile(const Path& target, const Path& own) const {
    const Path place = files_.resolved(target);
    const Path belowCard = place.lexically_relative(files_.resolved(values_.root));
    if (belowCard.empty() || *belowCard.begin() == "..") return;  // without looking for the file on the card
    if (place != files_.resolved(values_.root / own) && fileKey(belowCard) != fileKey(own)) return;
    throw FileError(std::make_error_code(std::errc::operation_not_permitted), target);
  }

  void write(const Path& target, const Path& own, const SpdDocument& document) {
    refuseOwnFile(target, own);
    const std::string bytes = document.serialize();
    replaceFile(files_, target, Durability::synced, [&](OpenFile& file) { file.write(bytes); });
  }

  void writeParameters(const Wave& wave) {
    makeFolders(files_, values_.destination / cardpaths::waveParameterFolder(wave.bank));
    makeFolders(files_, values_.destination / cardpaths::waveDataFolder(wave.bank));
    const auto stored = values_.waveDocs.find(wave.id());
    const Path file = cardpaths::waveParameterFile(wave.bank, wave.fileNumber);
    write(values_.destination / file, file,
          waveDocument(wave, stored == values_.waveDocs.end() ? nullptr : &stored->second));
  }

  void writeAudio(const Wave& wave) {
    const std::optional<Path> target = cardpaths::audioTarget(wave);
    if (!target) return;
    if (const std::optional<Path> source = audioOnCard(wave)) return copy(*card_, *source, *target);
    const auto staged = values_.stagedAudioFiles.find(wave.id());
    if (staged != values_.stagedAudioFiles.end()) copy(files_, staged->second, *target);
  }

  void copy(const FileSystem& from, const Path& source, const Path& file) {
    const Path target = values_.destination / file;
    refuseOwnFile(target, file);
    sourceStatus(from, source);
    const std::unique_ptr<OpenFile> content = from.open(source);
    replaceFile(files_, target, Durability::synced, [&](OpenFile& to) { to.append(*content); });
  }

  const KitExport& values_;
  FileSystem& files_;
  std::unique_ptr<FileSystem> card_;
};

}  // namespace

void exportKitJob(const KitExport& values, FileSystem& files) {
  KitExporter(values, files).run();
}

}  // namespace tamboro
