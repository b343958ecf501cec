#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/Tree.h"

namespace tamboro::test {

/// An element of a document, read and changed by the tests' own few lines, so that what they expect doesn't come from
/// the code under test.
struct Element {
  enum class Kind { leaf, selfClosing, container };

  std::string before;  ///< whitespace in front of the open tag
  std::string name;
  Kind kind = Kind::leaf;
  std::string text;  ///< of a leaf, as it stands in the file
  std::vector<Element> children;
  std::string closing;  ///< whitespace in front of a container's close tag

  friend bool operator==(const Element&, const Element&) = default;

  /// The child of that name at a position among its like; null where there is none.
  Element* nth(const std::string& child, int position);
  const Element* nth(const std::string& child, int position) const;
  int count(const std::string& child) const;
  int number(const std::string& child, int fallback) const;
  void set(const std::string& child, const std::string& value);
  void set(const std::string& child, int value) { set(child, std::to_string(value)); }
  std::string cells(const std::string& prefix) const;
  void setCells(const std::string& prefix, std::size_t width, const std::string& value);
  void exchange(const std::string& child, int a, int b);
};

/// A file that is expected: its bytes, or the tree and what follows it.
struct ModelFile {
  std::optional<std::string> bytes;
  Element tree;
  std::string trailing;
};
using ModelTree = std::map<std::string, ModelFile>;

/// Reads a document of ASCII markup without declarations or comments; `trailing` is what stands behind the root.
ModelFile readElements(const std::string& bytes);

/// What differs. Whitespace counts where the expected tree has any: new elements have none and are laid out by the
/// writer.
std::string differenceOf(const ModelTree& expected, const Tree& actual);

}  // namespace tamboro::test
