#include "card/SpdNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

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

TEST(SpdNode, FindsChildrenByName) {
  const SpdNode node = parsed("<A><B>1</B><C>2</C><B>3</B><b>4</b></A>");
  EXPECT_EQ(node.child("B")->text(), "1");
  EXPECT_EQ(node.child("B", 1)->text(), "3");
  EXPECT_EQ(node.child("B", 2), nullptr);
  EXPECT_EQ(node.child("X"), nullptr);
  EXPECT_EQ(node.childCount("B"), 2U);
  EXPECT_EQ(node.children("B"), (std::vector{*node.child("B"), *node.child("B", 1)}));
  EXPECT_EQ(parsed("<A>1</A>").child("A"), nullptr);
  EXPECT_TRUE(parsed("<A/>").children("").empty());
}

TEST(SpdNode, ReadsIntegersOrFallsBack) {
  const std::pair<std::string, std::int64_t> cases[] = {
      {"0", 0},
      {"+5", 5},
      {"-5", -5},
      {"007", 7},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", 42},
      {"", 42},
      {"+", 42},
      {"-", 42},
      {"+-5", 42},
      {"-+5", 42},
      {"5 ", 42},
      {" 5", 42},
      {"1.5", 42},
      {"0x10", 42},
      {"\u0665", 42},
  };
  for (const auto& [text, value] : cases)
    EXPECT_EQ(SpdNode::container("A", {SpdNode::leaf("V", text)}).intValue("V", 42), value) << text;
  EXPECT_EQ(parsed("<A><V/></A>").intValue("V", 42), 42);
  EXPECT_EQ(parsed("<A><V><W>1</W></V></A>").intValue("V", 42), 42);
  EXPECT_EQ(parsed("<A><V/><V>7</V></A>").intValue("V", 42), 42);
}

TEST(SpdNode, SetsLeaves) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"<A>\r\n\t<V>1</V>\r\n</A>", "V", "<A>\r\n\t<V>new</V>\r\n</A>"},
      {"<A> <V/> <V>2</V> </A>", "V", "<A> <V>new</V> <V>2</V> </A>"},
      {"<A> <V>  <W/> </V> </A>", "V", "<A> <V>new</V> </A>"},
      {"<A><V>1</V> \t</A>", "N", "<A><V>1</V>\n\t<N>new</N> \t</A>"},
      {"<A>text</A>", "N", "<A>\n\t<N>new</N>\n</A>"},
      {"<A/>", "N", "<A>\n\t<N>new</N>\n</A>"},
  };
  for (const auto& [bytes, name, expected] : cases) {
    SpdNode node = parsed(bytes);
    node.setLeaf(name, "new");
    EXPECT_EQ(written(node), expected);
    SpdNode again = node;
    again.setLeaf(name, "new");
    EXPECT_EQ(again, node);
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
  node.replaceChild("X", 0, SpdNode::leaf("P", "x"));
  EXPECT_EQ(node, before);
  node.replaceChild("P", 1, SpdNode::leaf("R", "x"));
  EXPECT_EQ(written(node), "<A>\n\t<P>0</P>\n\t<Q/>\n\t<R>x</R>\n</A>");
  EXPECT_EQ(node.children()[2].leadingWhitespace(), std::nullopt);
  node.replaceChild("P", 0, *parsed("<A>  <P/></A>").child("P"));
  EXPECT_EQ(written(node), "<A>  <P/>\n\t<Q/>\n\t<R>x</R>\n</A>");
  node.replaceChild("Q", 0, *node.child("P"));
  node.replaceChild("R", 0, node);
  EXPECT_EQ(written(node), "<A>  <P/>  <P/><A>  <P/>  <P/>\n\t\t<R>x</R>\n</A>\n</A>");
  SpdNode leaf = SpdNode::leaf("P", "text");
  leaf.replaceChild("P", 0, node);
  EXPECT_EQ(leaf.text(), "text");
}

SpdNode cells(std::initializer_list<std::string_view> codes) {
  SpdNode node = SpdNode::selfClosing("A");
  int cell = 0;
  for (const std::string_view code : codes)
    node.setLeaf("Nm" + std::to_string(cell++), code);
  return node;
}

TEST(SpdNode, ReadsNamesUpToTheFirstUnusableCode) {
  EXPECT_EQ(cells({"65", "0", "66"}).encodedName("Nm", 3), "A");
  EXPECT_EQ(cells({"65", "32", "32"}).encodedName("Nm", 3), "A  ");
  EXPECT_EQ(cells({"65", "66", "67"}).encodedName("Nm", 2), "AB");
  EXPECT_EQ(cells({"233", "8364", "129345", "1114111"}).encodedName("Nm", 9), "\u00E9\u20AC\U0001F941\U0010FFFF");
  for (const auto* end : {"55296", "57343", "1114112", "-1", "x", "", "4294967361"})
    EXPECT_EQ(cells({"65", end, "66"}).encodedName("Nm", 3), "A") << end;
  EXPECT_EQ(cells({"55295", "57344"}).encodedName("Nm", 2), "\uD7FF\uE000");
  EXPECT_EQ(cells({"65"}).encodedName("Nm", -1), "");
}

TEST(SpdNode, WritesNamesAsOneCodePerCell) {
  SpdNode node = parsed("<A> <Nm1>7</Nm1> <X/></A>");
  node.setEncodedName("\u00E9\U0001F941xyz", "Nm", 3);
  EXPECT_EQ(written(node), "<A> <Nm1>129345</Nm1> <X/>\n\t<Nm0>233</Nm0>\n\t<Nm2>120</Nm2></A>");
  node.setEncodedName("", "Nm", 3);
  EXPECT_EQ(written(node), "<A> <Nm1>0</Nm1> <X/>\n\t<Nm0>0</Nm0>\n\t<Nm2>0</Nm2></A>");
  node.setEncodedName("A\xFFz", "Nm", 3);
  EXPECT_EQ(node.encodedName("Nm", 3), "A\uFFFDz");
}

TEST(SpdNode, ComparesByValueWhitespaceIncluded) {
  const std::string base = "<A>\n\t<B>1</B>\n\t<C><D/></C>\n</A>";
  const SpdNode node = parsed(base);
  EXPECT_EQ(node, parsed(base + "behind"));
  for (const std::string other :
       {"<A>\n\t<B>2</B>\n\t<C><D/></C>\n</A>", "<A>\n\t<B>1</B>\n\t<C><E/></C>\n</A>",
        "<A>\n\t<B>1</B>\n\t<C> <D/></C>\n</A>", "<A>\n\t<B>1</B>\n\t<C><D/> </C>\n</A>",
        "<A>\n\t<B>1</B>\n\t<C><D></D></C>\n</A>", "<A>\n\t<B>1</B>\n\t<C><D/></C>\n\t<F/>\n</A>",
        "<A>\n\t<B>1</B>\n</A>", "<A>\n\t<B>1</B>\n\t<C><D/></C></A>", "<A>1</A>", "<A/>"})
    EXPECT_NE(node, parsed(other)) << other;
  // Absent whitespace equals only absent.
  EXPECT_NE(parsed("<A></A>"), SpdNode::leaf("A", ""));
  EXPECT_EQ(SpdNode::leaf("A", ""), SpdNode::leaf("A", ""));
  EXPECT_NE(SpdNode::leaf("A", ""), SpdNode::selfClosing("A"));
  EXPECT_NE(SpdNode::leaf("A", ""), SpdNode::container("A", {}));
  EXPECT_EQ(SpdNode(), SpdNode::leaf("", ""));
}

TEST(SpdNode, CopiesAreIndependent) {
  SpdNode node = parsed("<A><P><V>1</V></P><P><V>2</V></P></A>");
  SpdNode pad = *node.child("P", 1);
  pad.setLeaf("V", 3);
  const SpdNode edited = pad;
  pad.setLeaf("V", 4);
  pad.setLeaf("W", 5);
  SpdNode other = node;
  other.replaceChild("P", 0, pad);
  SpdNode moved = std::move(pad);
  pad = moved;
  pad.setLeaf("V", 6);
  EXPECT_EQ(written(node), "<A><P><V>1</V></P><P><V>2</V></P></A>");
  EXPECT_EQ(edited.intValue("V", 0), 3);
  EXPECT_EQ(moved.intValue("V", 0), 4);
  EXPECT_EQ(other.child("P")->childCount("W"), 1U);
  moved = *other.child("P", 1);
  other = *other.child("P", 1);  // what it is assigned hangs below it
  EXPECT_EQ(moved, other);
}

TEST(SpdNode, CopiesOnOtherThreadsAreIndependent) {
  SpdNode node = parsed("<A><P><V>1</V></P><P><V>2</V></P></A>");
  node.setLeaf("Made", "by the program");
  const SpdNode before = node;
  const auto edit = [](SpdNode copy) {
    for (int i = 0; i < 500; ++i) {
      const SpdNode snapshot = copy;
      SpdNode pad = *copy.child("P", 1);
      pad.setLeaf("V", i);
      copy.replaceChild("P", 1, pad);
      copy.setLeaf("Made", i);
      EXPECT_NE(copy, snapshot);
    }
    EXPECT_EQ(copy.intValue("Made", 0), 499);
  };
  std::thread first(edit, node);
  std::thread second(edit, node);
  node.setLeaf("Made", "meanwhile");
  first.join();
  second.join();
  EXPECT_EQ(before.child("Made")->text(), "by the program");
  EXPECT_EQ(before.child("P", 1)->intValue("V", 0), 2);
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

/// Runs on a thread whose stack is far smaller than a recursion over the tree would need.
void onSmallStack(void (*work)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024);
  pthread_t thread{};
  const auto run = [](void* argument) -> void* { return reinterpret_cast<void (*)()>(argument)(), nullptr; };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, reinterpret_cast<void*>(work)), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(SpdNode, DeepTreesNeedNoStack) {
  onSmallStack([] {
    constexpr int levels = 100'000;
    // Elements with whitespace of their own: computed whitespace grows with the square of the depth.
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
    SpdNode node = build();
    const SpdNode other = build();
    EXPECT_EQ(node, other);
    SpdNode changed = node;
    changed.setLeaf("B", 1);
    EXPECT_NE(changed, other);
    const std::string bytes = written(node);
    EXPECT_EQ(bytes.size(), (levels + 2) * std::string_view("<A></A>").size() + 1);
    std::vector<SpdNode> children;
    children.push_back(std::move(node));
    changed = SpdNode::container("A", std::move(children));
  });
}

TEST(SpdNode, DeepestFileNeedsNoStack) {
  onSmallStack([] {
    std::string bytes;
    for (std::size_t i = 0; i < SpdDocument::maxDepth; ++i)
      bytes.insert(0, "<A>").append("</A>");
    EXPECT_EQ(SpdDocument::parse(bytes).serialize(), bytes);
    bytes.clear();
    for (int i = 0; i < 1'000'000; ++i)
      bytes += "<A>";
    EXPECT_ANY_THROW(SpdDocument::parse(bytes));
  });
}

}  // namespace
}  // namespace tamboro
