#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "model/Wave.h"
#include "platform/FileSystem.h"

/// The card's directory layout: the one place where its paths, relative to the card's root, are made and parsed.
namespace tamboro::cardpaths {

Path kitFolder();                                              ///< KIT
Path kitFile(std::int64_t slot);                               ///< KIT/kitNNN.spd
Path waveFolder();                                             ///< WAVE
Path waveParameterRoot();                                      ///< WAVE/PRM
Path waveParameterFolder(std::int64_t bank);                   ///< WAVE/PRM/BB
Path waveParameterFile(std::int64_t bank, std::int64_t file);  ///< WAVE/PRM/BB/FF.spd
Path waveDataRoot();                                           ///< WAVE/DATA
Path waveDataFolder(std::int64_t bank);                        ///< WAVE/DATA/BB
Path systemFolder();                                           ///< SYSTEM
Path tagListFile();                                            ///< SYSTEM/tag_list.spd
Path nameIndexFile();                                          ///< SYSTEM/wavelist_name.spd
Path tagNumberIndexFile();                                     ///< SYSTEM/wavelist_tagnum.spd
Path tagNameIndexFile();                                       ///< SYSTEM/wavelist_tagname.spd

/// How the names begin that only a save in progress gives; a cut can leave such files and folders.
inline constexpr std::string_view temporaryPrefix = ".tamboro-";
bool isTemporary(std::string_view name);

/// Whether a file's name ends as a parameter file's does, case-sensitive.
bool isDocument(const Path& file);
/// The slot that a file name in KIT stands for: "kit", an integer, ".spd", case-sensitive. kit7.spd and kit007.spd are
/// the same slot.
std::optional<std::int64_t> slotOfKitFile(std::string_view name);
/// The bank that a folder name in WAVE/PRM stands for.
std::optional<std::int64_t> bankOfFolder(std::string_view name);
/// The file number that a file name in a bank's folder stands for.
std::optional<std::int64_t> numberOfWaveFile(std::string_view name);

/// Where a sample's audio lies: WAVE/DATA and its relative path, normalised. Absent where that is not strictly below
/// WAVE/DATA: `Path` is free text from the card and must not lead out of its place. Whether a file exists isn't asked.
std::optional<Path> audioFile(const Wave& wave);
/// Where a save or an export puts the sample's audio: the bank's folder and the last component of the path above.
std::optional<Path> audioTarget(const Wave& wave);

}  // namespace tamboro::cardpaths
