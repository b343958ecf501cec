#include "card/SpdNode.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>

#include "card/SpdDocument.h"

namespace tamboro {
namespace {

SpdNode parsed(std::string_view bytes) {
  return SpdDocument::parse(bytes).root;
}

std::string written(const SpdNode& node) {
  return SpdDocument{node, LineSeparator::lf, ""}.serialize();
}

TEST(SpdNode, ReadsIntegersOrFallsBack) {
  const std::pair<std::string, std::int64_t> cases[] = {
      {"+5", 5},
      {"007", 7},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", 42},
      {"", 42},
      {"+-5", 42},
      {"5 ", 42},
      {" 5", 42},
      {"1.5", 42}};
  for (const auto& [text, value] : cases)
    EXPECT_EQ(SpdNode::container("A", {SpdNode::leaf("V", text)}).intValue("V", 42), value) << text;
  EXPECT_EQ(parsed("<A><V/><V>7</V></A>").intValue("V", 42), 42);
}

TEST(SpdNode, SetsLeaves) {
  const std::pair<std::string, std::string> cases[] = {
      {"<A>\r\n\t<V>1</V>\r\n</A>", "<A>\r\n\t<V>new</V>\r\n</A>"},
      {"<A> <V>  <W/> </V> <V>2</V> </A>", "<A> <V>new</V> <V>2</V> </A>"},
      {"<A><X>1</X> \t</A>", "<A><X>1</X>\n\t<V>new</V> \t</A>"},
      {"<A/>", "<A>\n\t<V>new</V>\n</A>"},
  };
  for (const auto& [bytes, expected] : cases) {
    SpdNode node = parsed(bytes);
    node.setLeaf("V", "new");
    EXPECT_EQ(written(node), expected);
  }
  SpdNode node;
  node.setLeaf("V", std::numeric_limits<std::int64_t>::min());
  node.setLeaf("W", "\xF0\x9F");
  node.setLeaf("V", node.child("V")->text().substr(0, 2));  // a view into what changes
  node.setLeaf(node.children()[0].name(), node.child("V")->text().substr(1));
  EXPECT_EQ(written(node), "<>\n\t<V>9</V>\n\t<W>\uFFFD</W>\n</>");
}

TEST(SpdNode, ReplacesTheNthChildOfAName) {
  SpdNode node = parsed("<A>\n\t<P>0</P>\n\t<Q/>\n\t<P>1</P>\n</A>");
  const SpdNode before = node;
  node.replaceChild("P", 2, SpdNode::leaf("P", "x"));
  EXPECT_EQ(node, before);
  node.replaceChild("P", 1, SpdNode::leaf("R", "x"));
  node.replaceChild("P", 0, *parsed("<A>  <P/></A>").child("P"));
  EXPECT_EQ(written(node), "<A>  <P/>\n\t<Q/>\n\t<R>x</R>\n</A>");
  node.replaceChild("Q", 0, *node.child("P"));
  node.replaceChild("R", 0, node);
  EXPECT_EQ(written(node), "<A>  <P/>  <P/><A>  <P/>  <P/>\n\t\t<R>x</R>\n</A>\n</A>");
}

SpdNode cells(std::initializer_list<std::string_view> codes) {
  SpdNode node = SpdNode::selfClosing("A");
  int cell = 0;
  for (const std::string_view code : codes)
    node.setLeaf("Nm" + std::to_string(cell++), code);
  return node;
}

TEST(SpdNode, ReadsNamesUpToTheFirstUnusableCode) {
  EXPECT_EQ(cells({"65", "66", "67"}).encodedName("Nm", 2), "AB");
  EXPECT_EQ(cells({"233", "8364", "1048575", "1114111"}).encodedName("Nm", 9), "\u00E9\u20AC\U000FFFFF\U0010FFFF");
  EXPECT_EQ(cells({"55295", "57344"}).encodedName("Nm", 2), "\uD7FF\uE000");
  for (const auto* end : {"0", "55296", "57343", "1114112", "-1", "x", "4294967361"})
    EXPECT_EQ(cells({"65", end, "66"}).encodedName("Nm", 3), "A") << end;
}

TEST(SpdNode, WritesNamesAsOneCodePerCell) {
  SpdNode node = parsed("<A> <Nm1>7</Nm1> <X/></A>");
  node.setEncodedName("\u00E9\U0001F941xyz", "Nm", 3);
  EXPECT_EQ(written(node), "<A> <Nm1>129345</Nm1> <X/>\n\t<Nm0>233</Nm0>\n\t<Nm2>120</Nm2></A>");
  node.setEncodedName("\xFF", "Nm", 3);
  EXPECT_EQ(written(node), "<A> <Nm1>0</Nm1> <X/>\n\t<Nm0>65533</Nm0>\n\t<Nm2>0</Nm2></A>");
}

TEST(SpdNode, ComparesByValueWhitespaceIncluded) {
  const SpdNode node = parsed("<A>\n\t<C><D/></C>\n</A>");
  EXPECT_EQ(node, parsed("<A>\n\t<C><D/></C>\n</A>behind"));
  for (const std::string other :
       {"<A>\n\t<C><E/></C>\n</A>", "<A>\n\t<C> <D/></C>\n</A>", "<A>\n\t<C><D/> </C>\n</A>",
        "<A>\n\t<C><D></D></C>\n</A>", "<A>\n\t<C><D>1</D></C>\n</A>", "<A>\n\t<C><D/></C>\n\t<F/>\n</A>"})
    EXPECT_NE(node, parsed(other)) << other;
  // Absent whitespace equals only absent.
  EXPECT_NE(parsed("<A><B/></A>"), SpdNode::container("A", {SpdNode::selfClosing("B")}));
  EXPECT_EQ(SpdNode::leaf("A", ""), SpdNode::leaf("A", ""));
}

TEST(SpdNode, CopiesAreIndependent) {
  SpdNode node = parsed("<A><P><V>1</V></P><P><V>2</V></P></A>");
  SpdNode pad = *node.child("P", 1);
  pad.setLeaf("V", 3);
  const SpdNode edited = pad;
  pad.setLeaf("V", 4);
  SpdNode other = node;
  other.replaceChild("P", 0, pad);
  const SpdNode moved = std::move(pad);
  pad = moved;
  pad.setLeaf("V", 6);
  EXPECT_EQ(written(node), "<A><P><V>1</V></P><P><V>2</V></P></A>");
  EXPECT_EQ(edited.intValue("V", 0), 3);
  EXPECT_EQ(moved.intValue("V", 0), 4);
  other = *other.child("P", 0);  // what it is assigned hangs below it
  EXPECT_EQ(moved, other);
}

// Nothing but the count orders the other thread's reads before the change in place: for the thread sanitizer to see.
TEST(SpdNode, ChangesInPlaceOnlyBehindTheLastReader) {
  SpdNode node = parsed("<A><V>1</V></A>");
  node.setLeaf("V", 2);
  std::atomic<bool> gone = false;
  std::thread reader([copy = node, &gone]() mutable {
    EXPECT_EQ(SpdNode(std::move(copy)).intValue("V", 0), 2);
    gone.store(true, std::memory_order_relaxed);
  });
  while (!gone.load(std::memory_order_relaxed))
    std::this_thread::yield();
  node.setLeaf("V", 3);
  reader.join();
  EXPECT_EQ(node.intValue("V", 0), 3);
}

// Deeper than any stack. Elements with whitespace of their own: what is computed grows with the square of the depth.
TEST(SpdNode, DeepTreesNeedNoStack) {
  constexpr int levels = 1'000'000;
  const SpdNode shell = *parsed("<R><A><A>1</A></A></R>").child("A");
  const auto build = [&shell] {
    SpdNode node = shell;
    for (int i = 0; i < levels; ++i) {
      SpdNode outer = shell;
      outer.replaceChild("A", 0, node);
      node = std::move(outer);
    }
    return node;
  };
  const SpdNode node = build();
  SpdNode other = build();
  EXPECT_EQ(node, other);
  EXPECT_EQ(written(node).size(), (levels + 2) * std::string_view("<A></A>").size() + 1);
  other.setLeaf("B", 1);
  EXPECT_NE(node, other);
}

}  // namespace
}  // namespace tamboro
