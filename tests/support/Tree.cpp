#include "support/Tree.h"

#include <algorithm>

namespace tamboro::test {

namespace {

template<typename Visit>
void visitEntries(const FileSystem& files, const Path& folder, const Path& relative, Visit visit) {
  for (const std::string& name : files.list(folder / relative)) {
    const Path entry = relative / name;
    const FileKind kind = files.entryStatus(folder / entry).kind;
    visit(entry, kind);
    if (kind == FileKind::folder) visitEntries(files, folder, entry, visit);
  }
}

std::string contentDifference(const std::string& expected, const std::string& actual) {
  const auto parted = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
  const auto at = static_cast<std::size_t>(parted.first - expected.begin());
  const auto around = [&](const std::string& bytes) {
    return ::testing::PrintToString(bytes.substr(at - std::min<std::size_t>(at, 20), 60));
  };
  return " differs at byte " + std::to_string(at) + ": expected ..." + around(expected) + ", is ..." + around(actual);
}

}  // namespace

Tree readTree(const FileSystem& files, const Path& folder) {
  Tree tree;
  visitEntries(files, folder, {}, [&](const Path& entry, FileKind kind) {
    if (kind == FileKind::regular) files.read(folder / entry, tree[entry.generic_string()]);
  });
  return tree;
}

std::vector<std::string> readFolders(const FileSystem& files, const Path& folder) {
  std::vector<std::string> folders;
  visitEntries(files, folder, {}, [&](const Path& entry, FileKind kind) {
    if (kind == FileKind::folder) folders.push_back(entry.generic_string());
  });
  std::sort(folders.begin(), folders.end());
  return folders;
}

void writeTree(FileSystem& files, const Path& folder, const Tree& tree) {
  makeFolders(files, folder);
  for (const auto& [name, bytes] : tree)
    writeFile(files, folder / name, bytes);
}

void writeFile(FileSystem& files, const Path& file, const std::string& bytes) {
  makeFolders(files, file.parent_path());
  if (files.entryStatus(file).kind != FileKind::none) files.removeFile(file);
  files.create(file)->write(bytes);
}

std::string readFile(const FileSystem& files, const Path& file) {
  std::string bytes;
  files.read(file, bytes);
  return bytes;
}

std::string difference(const Tree& expected, const Tree& actual) {
  std::string text;
  for (const auto& [name, bytes] : expected) {
    const auto found = actual.find(name);
    if (found == actual.end()) {
      text += name + " is missing\n";
    } else if (found->second != bytes) {
      text += name + contentDifference(bytes, found->second) + "\n";
    }
  }
  for (const auto& [name, bytes] : actual) {
    if (!expected.contains(name)) text += name + " is there and not expected\n";
  }
  return text;
}

}  // namespace tamboro::test
