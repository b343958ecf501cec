#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "card/NaiveDocument.h"
#include "card/SpdDocument.h"
#include "card/SpdParseError.h"

namespace tamboro {
namespace {

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  std::size_t below(std::size_t bound) { return engine_() % bound; }
  template<typename Range>
  const auto& pick(const Range& range) {
    return range[below(std::size(range))];
  }

 private:
  std::mt19937 engine_;
};

const std::vector<std::string> names = {"A", "B", "AB", "Nm10", "SubWvLevel", "A b=\"1\"", "", "\u00E9", "<"};
const std::vector<std::string> gaps = {"", " ", "\n", "\r\n", "\r\n\t\t", "\n \t\r"};
const std::vector<std::string> texts = {"",   "1",   "-12", "a < b", "x<B>y</B>", "\u20AC 12 ", std::string("\0", 1),
                                        "</", "x</A"};
const std::vector<std::string> scraps = {"<",      ">",    "/",      "</",        "/>",   "<A>",  "</A>", "<B/>",
                                         "A",      "B",    " ",      "\n",        "\r\n", "1",    "\xFF", "\xC3",
                                         "\xA9",   "\xE2", "\x82",   "\xF0",      "\x9F", "\xED", "\xA0", "\u00E9",
                                         "\uFFFD", "<A",   "<\xFF>", "</\uFFFD>", "Nm10", "</>"};

std::string element(Random& random, int depth) {
  const std::string& name = random.pick(names);
  const std::string open = std::string("<").append(name);
  switch (random.below(depth > 4 ? 2 : 4)) {
    case 0:
      return open + "/>";
    case 1:
      return open + ">" + random.pick(gaps) + random.pick(texts) + "</" + name + ">";
    default:
      std::string inner = random.pick(gaps);
      for (std::size_t i = random.below(5); i > 0; --i)
        inner += element(random, depth + 1) + random.pick(gaps);
      return open + ">" + inner + "</" + name + ">";
  }
}

std::string mutated(Random& random, std::string bytes) {
  for (std::size_t i = random.below(4) + 1; i > 0; --i) {
    const std::size_t at = random.below(bytes.size() + 1);
    switch (random.below(4)) {
      case 0:
        bytes.insert(at, random.pick(scraps));
        break;
      case 1:
        bytes.erase(at, random.below(6));
        break;
      case 2:
        bytes.insert(at, bytes.substr(random.below(bytes.size() + 1), random.below(20)));
        break;
      default:
        if (at < bytes.size()) bytes[at] = static_cast<char>(random.below(256));
    }
  }
  return bytes;
}

/// Compares one parse with the naive one, tree or failure, and returns whether the bytes parse.
bool agrees(const std::string& bytes) {
  std::string failure;
  naive::Document expected;
  try {
    expected = naive::Document::parse(bytes);
  } catch (const std::string& text) {
    failure = text;
  }
  try {
    const SpdDocument document = SpdDocument::parse(bytes);
    EXPECT_EQ(failure, "");
    EXPECT_TRUE(naive::equal(expected.root, document.root));
    EXPECT_EQ(document.trailingBytes, expected.trailing);
    const std::string once = document.serialize();
    EXPECT_EQ(once, expected.serialize());
    // Ill-formed text, once repaired, can read as the closing tag that it did not match.
    if (naive::decoded(bytes) != bytes) return true;
    const SpdDocument again = SpdDocument::parse(once);
    EXPECT_EQ(again.root, document.root);
    EXPECT_EQ(again.serialize(), once);
    return true;
  } catch (const SpdParseError& error) {
    EXPECT_EQ(error.text(), failure);
    return false;
  }
}

TEST(SpdFuzz, DocumentsByGrammarAndTheirMutationsReadAsTheNaiveParserReadsThem) {
  Random random(1);
  int parsedCount = 0;
  int mutantsParsed = 0;
  for (int i = 0; i < 4000 && !testing::Test::HasFailure(); ++i) {
    const std::string bytes = element(random, 0) + random.pick(gaps) + random.pick(texts);
    SCOPED_TRACE(testing::PrintToString(bytes));
    parsedCount += agrees(bytes) ? 1 : 0;
    const std::string mutant = mutated(random, bytes);
    SCOPED_TRACE(testing::PrintToString(mutant));
    mutantsParsed += agrees(mutant) ? 1 : 0;
  }
  // Both roads have to be well travelled for this to say anything.
  EXPECT_GT(parsedCount, 1000);
  EXPECT_GT(mutantsParsed, 500);
  EXPECT_LT(mutantsParsed, 3500);
}

TEST(SpdFuzz, ScrapsReadAsTheNaiveParserReadsThem) {
  Random random(2);
  for (int i = 0; i < 20'000 && !testing::Test::HasFailure(); ++i) {
    std::string bytes = random.below(8) == 0 ? "" : "<A>";
    for (std::size_t count = random.below(16); count > 0; --count)
      bytes += random.pick(scraps);
    if (random.below(2) == 0) bytes += "</A>";
    SCOPED_TRACE(testing::PrintToString(bytes));
    agrees(bytes);
  }
}

/// A naive kit of leaves: what edits do, on a list of pairs.
TEST(SpdFuzz, EditsOnSharedCopiesChangeOneTreeOnly) {
  using Leaves = std::vector<std::pair<std::string, std::string>>;
  Random random(3);
  std::vector<std::pair<SpdNode, Leaves>> trees(1);
  trees[0].first = SpdDocument::parse("<A> <V0>0</V0> <V1>1</V1> </A>").root;
  trees[0].second = {{"V0", "0"}, {"V1", "1"}};
  for (int i = 0; i < 5000; ++i) {
    auto [node, leaves] = random.pick(trees);
    const std::string value = std::to_string(i);
    const std::string name = std::string("V").append(std::to_string(random.below(30)));
    const auto at = std::ranges::find(leaves, name, [](const auto& leaf) { return leaf.first; });
    if (random.below(2) == 0) {
      node.replaceChild(name, 0, SpdNode::leaf(name, value));
      if (at != leaves.end()) at->second = value;
    } else {
      node.setLeaf(name, value);
      if (at != leaves.end()) {
        at->second = value;
      } else {
        leaves.emplace_back(name, value);
      }
    }
    if (trees.size() < 20) {
      trees.emplace_back(std::move(node), leaves);
    } else {
      trees[random.below(trees.size())] = {std::move(node), leaves};
    }
  }
  for (const auto& [node, leaves] : trees) {
    Leaves read;
    for (const SpdNode& child : node.children())
      read.emplace_back(child.name(), child.text());
    EXPECT_EQ(read, leaves);
  }
}

}  // namespace
}  // namespace tamboro
