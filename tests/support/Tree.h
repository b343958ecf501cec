#pragma once

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

#include "platform/FileSystem.h"

namespace tamboro::test {

/// The files below a folder: path relative to it (with "/") to bytes.
using Tree = std::map<std::string, std::string>;

/// Reads all regular files below a folder; links are not followed and not told.
Tree readTree(const FileSystem& files, const Path& folder);
/// All folders below a folder, ascending.
std::vector<std::string> readFolders(const FileSystem& files, const Path& folder);
/// Writes the files with all folders they need; a file that is there is replaced.
void writeTree(FileSystem& files, const Path& folder, const Tree& tree);
/// Replaces or makes one file with its folders.
void writeFile(FileSystem& files, const Path& file, const std::string& bytes);
std::string readFile(const FileSystem& files, const Path& file);

/// What differs, a line for each file, with the bytes around the first difference; empty for equal trees.
std::string difference(const Tree& expected, const Tree& actual);

MATCHER_P(IsTree, expected, negation ? "is another tree" : "is the expected tree") {
  const std::string text = difference(expected, arg);
  *result_listener << "\n" << text;
  return text.empty();
}

}  // namespace tamboro::test
