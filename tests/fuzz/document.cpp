// A document: read, edited, written, each against the naive one. An input is a byte that counts the edits, four bytes
// for each edit, and the file.

#include <map>
#include <optional>
#include <vector>

#include "card/SpdDocument.h"
#include "card/SpdParseError.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/NaiveDocument.h"

namespace tamboro::fuzz {
namespace {

using naive::Element;

/// The edits once more, plainly. New whitespace is laid out at once, as the writer does later.
struct NaiveEdits {
  std::string separator;

  void setLeaf(Element& parent, std::size_t depth, const std::string& name, const std::string& text) const {
    if (parent.content != SpdNode::Content::container) {
      parent.content = SpdNode::Content::container;
      parent.text.clear();
      parent.closing = separator + std::string(depth, '\t');
    }
    for (Element& child : parent.children) {
      if (child.name != name) continue;
      child = {name, SpdNode::Content::leaf, child.leading, text, {}, {}};
      return;
    }
    parent.children.push_back({name, SpdNode::Content::leaf, separator + std::string(depth + 1, '\t'), text, {}, {}});
  }

  static Element* find(Element& parent, const std::string& name, std::size_t occurrence) {
    for (Element& child : parent.children) {
      if (child.name == name && occurrence-- == 0) return &child;
    }
    return nullptr;
  }
};

/// One tree and its naive twin.
struct Pair {
  SpdDocument document;
  naive::Document twin;
};

class Editor {
 public:
  Editor(Pair& pair, Choices choices) : pair_(pair), choices_(choices) {
    edits_.separator = pair.document.lineSeparator == LineSeparator::crlf ? "\r\n" : "\n";
  }

  void step() {
    SpdNode& root = pair_.document.root;
    Element& twin = pair_.twin.root;
    const int kind = choices_.below(5);
    const std::string name = anyName();
    const auto occurrence = static_cast<std::size_t>(choices_.below(3));
    const std::string text = std::to_string(choices_.below(100));
    Element* const child = NaiveEdits::find(twin, name, occurrence);
    const SpdNode* const node = root.child(name, occurrence);
    require((child != nullptr) == (node != nullptr), "both find the child");
    switch (kind) {
      case 0:
        root.setLeaf(name, text);
        return edits_.setLeaf(twin, 0, name, text);
      case 1:
        root.setEncodedName(text + "\u00E9", name, 4);
        return setCells(twin, name, text);
      case 2: {  // the first child in the place of another
        const Element* const first = NaiveEdits::find(twin, name, 0);
        if (child == nullptr) return;
        root.replaceChild(name, occurrence, *root.child(name));
        *child = Element(*first);
        return;
      }
      case 3: {  // all of a name at once, in turn
        std::map<std::size_t, SpdNode> turned{{occurrence + 1, SpdNode::leaf(name, text)}};
        if (node != nullptr) turned[0] = *node;
        const std::optional<Element> front = child != nullptr ? std::optional(*child) : std::nullopt;
        root.replaceChildren(name, turned);
        if (front) *NaiveEdits::find(twin, name, 0) = *front;
        if (Element* next = NaiveEdits::find(twin, name, occurrence + 1))
          *next = {name, SpdNode::Content::leaf, edits_.separator + "\t", text, {}, {}};
        return;
      }
      default:  // a child's own leaf
        if (child == nullptr) return;
        SpdNode changed = *node;
        changed.setLeaf("Wv", text);
        root.replaceChild(name, occurrence, changed);
        edits_.setLeaf(*child, 1, "Wv", text);
    }
  }

 private:
  std::string anyName() {
    static const std::vector<std::string> known{"PadPrm", "Nm", "Level", "A"};
    const auto nodes = pair_.document.root.children();
    const int choice = choices_.byte();
    if (choice % 2 == 0 && !nodes.empty())
      return std::string(nodes[static_cast<std::size_t>(choice / 2) % nodes.size()].name());
    return known[static_cast<std::size_t>(choice / 2) % known.size()];
  }

  void setCells(Element& twin, const std::string& prefix, const std::string& digits) const {
    std::vector<int> codes(digits.begin(), digits.end());
    codes.push_back(0xE9);
    codes.resize(4);
    for (std::size_t cell = 0; cell < codes.size(); ++cell)
      edits_.setLeaf(twin, 0, prefix + std::to_string(cell), std::to_string(codes[cell]));
  }

  Pair& pair_;
  Choices choices_;
  NaiveEdits edits_;
};

void edit(const Pair& read, Choices choices) {
  Pair edited = read;
  // Copies of every step share their storage with it; each has to stay what it was.
  std::vector<Pair> steps;
  for (Choices edits = choices; !edits.isEmpty();) {
    Editor(edited, edits.split(4)).step();
    steps.push_back(edited);
  }
  for (const Pair& step : steps)
    require(step.document.serialize() == step.twin.serialize(), "an edit writes what the naive one does");
  require(read.document.serialize() == read.twin.serialize(), "no edit reaches the tree that was copied");
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
    edit({document, expected}, edits);
  } catch (const SpdParseError& error) {
    // Up to a NUL, if the name has one.
    require(error.text() == failure, "the failure is the naive one");
  }
}

}  // namespace tamboro::fuzz
