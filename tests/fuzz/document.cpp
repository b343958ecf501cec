// A document: read, edited, written, each against the naive one. An input is a byte that counts the edits, four bytes
// for each edit, and the file.

#include <map>
#include <optional>

#include "card/SpdParseError.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/NaiveDocument.h"

namespace tamboro::fuzz {
namespace {

using naive::Element;

/// One tree and its naive twin.
struct Pair {
  SpdDocument document;
  naive::Document twin;

  /// What the writer lays out in front of an element so deep; the twin has it at once.
  std::string gap(std::size_t depth) const {
    return (document.lineSeparator == LineSeparator::crlf ? "\r\n" : "\n") + std::string(depth, '\t');
  }
  void setTwinLeaf(Element& parent, std::size_t depth, const std::string& name, const std::string& text) const {
    if (parent.content != naive::Content::container)
      parent = {parent.name, naive::Content::container, parent.leading, {}, gap(depth), {}};
    if (Element* const child = find(parent, name, 0)) {
      *child = {name, naive::Content::leaf, child->leading, text, {}, {}};
    } else {
      parent.children.push_back({name, naive::Content::leaf, gap(depth + 1), text, {}, {}});
    }
  }
  static Element* find(Element& parent, const std::string& name, std::size_t occurrence) {
    for (Element& child : parent.children) {
      if (child.name == name && occurrence-- == 0) return &child;
    }
    return nullptr;
  }
};

std::string anyName(const SpdNode& root, int choice) {
  const char* const known[] = {"PadPrm", "Nm", "Level", "A"};
  const auto nodes = root.children();
  const auto number = static_cast<std::size_t>(choice / 2);
  return choice % 2 == 0 && !nodes.empty() ? std::string(nodes[number % nodes.size()].name()) : known[number % 4];
}

/// Edits both in one of five ways.
void edit(Pair& pair, Choices choices) {
  SpdNode& root = pair.document.root;
  Element& twin = pair.twin.root;
  const int kind = choices.below(5);
  const std::string name = anyName(root, choices.byte());
  const auto occurrence = static_cast<std::size_t>(choices.below(3));
  const std::string text = std::to_string(choices.below(100));
  Element* const child = Pair::find(twin, name, occurrence);
  const SpdNode* const node = root.child(name, occurrence);
  require((child != nullptr) == (node != nullptr), "both find the child");
  if (kind == 0) {
    root.setLeaf(name, text);
    pair.setTwinLeaf(twin, 0, name, text);
  } else if (kind == 1) {
    root.setEncodedName(text + "\u00E9", name, 4);
    std::vector<int> codes(text.begin(), text.end());
    codes.push_back(0xE9);
    codes.resize(4);
    for (std::size_t cell = 0; cell < codes.size(); ++cell)
      pair.setTwinLeaf(twin, 0, name + std::to_string(cell), std::to_string(codes[cell]));
  } else if (kind == 2 && child != nullptr) {  // the first child in the place of another
    const Element first = *Pair::find(twin, name, 0);
    root.replaceChild(name, occurrence, *root.child(name));
    *child = first;
  } else if (kind == 3) {  // all of a name at once, in turn
    std::map<std::size_t, SpdNode> turned{{occurrence + 1, SpdNode::leaf(name, text)}};
    if (node != nullptr) turned[0] = *node;
    const std::optional<Element> front = child != nullptr ? std::optional(*child) : std::nullopt;
    root.replaceChildren(name, turned);
    if (front) *Pair::find(twin, name, 0) = *front;
    if (Element* const next = Pair::find(twin, name, occurrence + 1))
      *next = {name, naive::Content::leaf, pair.gap(1), text, {}, {}};
  } else if (kind == 4 && child != nullptr) {  // a child's own leaf
    SpdNode changed = *node;
    changed.setLeaf("Wv", text);
    root.replaceChild(name, occurrence, changed);
    pair.setTwinLeaf(*child, 1, "Wv", text);
  }
}

void editAll(const Pair& read, Choices edits) {
  // Copies of every step share their storage with it; each has to stay what it was.
  std::vector<Pair> steps{read};
  while (!edits.isEmpty()) {
    Pair next = steps.back();
    edit(next, edits.split(4));
    steps.push_back(next);
  }
  for (const Pair& step : steps)
    require(step.document.serialize() == step.twin.serialize(), "an edit writes what the naive one does");
}

}  // namespace

void tryInput(std::span<const std::uint8_t> input) {
  Choices choices(input);
  const Choices edits = choices.split(4 * static_cast<std::size_t>(choices.below(16)));
  const std::string bytes = choices.rest();
  std::string failure;
  naive::Document expected;
  try {
    expected = naive::Document::parse(bytes);
  } catch (const std::string& text) {
    failure = text;
  }
  try {
    const SpdDocument document = SpdDocument::parse(bytes);
    require(failure.empty(), "only what the naive reader reads is read");
    require(naive::equal(expected.root, document.root), "the tree is the naive one");
    require(document.trailingBytes == expected.trailing, "what follows the root is the same");
    const std::string written = document.serialize();
    require(written == expected.serialize(), "it is written as the naive one is");
    // Ill-formed text, once repaired, can read as the closing tag that it did not match.
    if (naive::decoded(bytes) == bytes) {
      const SpdDocument again = SpdDocument::parse(written);
      require(again.root == document.root && again.serialize() == written, "what is written reads as the same");
    }
    editAll({document, expected}, edits);
  } catch (const SpdParseError& error) {
    require(error.text() == failure, "the failure is the naive one");
  }
}

}  // namespace tamboro::fuzz
