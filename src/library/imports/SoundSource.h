#pragma once

#include <vector>

#include "platform/FileSystem.h"

namespace tamboro {

/// A file to import, or a folder whose .wav files are, those in folders below included.
struct SoundSource {
  Path path;
  bool isFolder = false;

  friend bool operator==(const SoundSource&, const SoundSource&) = default;
};

/// The extension, in lower case, is "wav".
bool isWaveName(const Path& path);

/// The name that a sample made of the file gets: the file's without extension, as UTF-8.
std::string sampleName(const Path& file);

/// The .wav files and the folders in a folder, in the order of their names. Hidden ones are passed over: a Mac puts one
/// beside each file it copies to a stick. So are links to folders, which can lead in circles. Throws FileError.
std::vector<SoundSource> soundsIn(const FileSystem& files, const Path& folder);

}  // namespace tamboro
