#include "card/SpdDocument.h"

#include <gtest/gtest.h>

#include "card/SpdParseError.h"

namespace tamboro {
namespace {

using namespace std::string_literals;
using Kind = SpdParseError::Kind;

std::string repeated(std::size_t count, std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i)
    result += text;
  return result;
}

std::string nested(std::size_t levels) {
  return repeated(levels, "<A>") + "1" + repeated(levels, "</A>");
}

std::string roundTrip(const std::string& bytes) {
  return SpdDocument::parse(bytes).serialize();
}

TEST(SpdDocument, RefusesWithKindTextAndOffset) {
  struct Case {
    std::string bytes;
    Kind kind;
    std::string expected;
    std::size_t offset;
    std::string text;
  };
  const Case cases[] = {
      {"", Kind::empty, "", 0, "Empty document"},
      {" \r\n\t", Kind::unexpectedByte, "<", 0, "Expected '<' at byte offset 0"},
      {"\xEF\xBB\xBF<A></A>", Kind::unexpectedByte, "<", 0, "Expected '<' at byte offset 0"},
      {"<A><B>1</B>", Kind::unexpectedByte, "<", 11, "Expected '<' at byte offset 11"},
      {"<A><B>1</B>x</A>", Kind::unexpectedByte, "<", 11, "Expected '<' at byte offset 11"},
      {"<A/x>", Kind::unexpectedByte, "/>", 2, "Expected '/>' at byte offset 2"},
      {"<A/", Kind::unexpectedByte, "/>", 2, "Expected '/>' at byte offset 2"},
      {"<A><B>1</B></C></A>", Kind::unexpectedByte, "/>", 12, "Expected '/>' at byte offset 12"},
      {"<A", Kind::unterminated, ">", 1, "Unterminated element, expected '>' starting at byte offset 1"},
      {"<A>1", Kind::unterminated, "</A>", 3, "Unterminated element, expected '</A>' starting at byte offset 3"},
      {"<A>  ", Kind::unterminated, "</A>", 5, "Unterminated element, expected '</A>' starting at byte offset 5"},
      {"<A>1</a>", Kind::unterminated, "</A>", 3, "Unterminated element, expected '</A>' starting at byte offset 3"},
      {"<A a=\"1\">1</A>", Kind::unterminated, "</A a=\"1\">", 9,
       "Unterminated element, expected '</A a=\"1\">' starting at byte offset 9"},
      // A declaration reads as an element that is never closed.
      {"<?xml version=\"1.0\"?>\n<A></A>", Kind::unexpectedByte, "<", 29, "Expected '<' at byte offset 29"},
      // The closing tag that is looked for is the name as decoded.
      {"<\xFF>1</\xFF>", Kind::unterminated, "</\uFFFD>", 3,
       "Unterminated element, expected '</\uFFFD>' starting at byte offset 3"},
      {nested(1025), Kind::tooDeep, "", 3072, "Elements nested more than 1024 deep at byte offset 3072"},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.bytes.substr(0, 40));
    try {
      SpdDocument::parse(expected.bytes);
      ADD_FAILURE() << "parses";
    } catch (const SpdParseError& error) {
      EXPECT_EQ(error.kind(), expected.kind);
      EXPECT_EQ(error.expected(), expected.expected);
      EXPECT_EQ(error.offset(), expected.offset);
      EXPECT_EQ(error.what(), expected.text);
    }
  }
}

TEST(SpdDocument, GivesBackWhatItRead) {
  const std::string kept[] = {
      "<A></A>",
      "<A/>",
      "<A />",
      "</>",
      "<></>",
      "<A><></></A>",
      "<A>\r\n\t<B>1</B>\r\n\t<C/>\r\n\t<D></D>\r\n</A>\r\n",
      "<A>\n <B>1 </B><C>&amp;</C>\n\t \n</A>",
      "<A>\r\n\t<B>1</B>\n\t<C>\r\t<D>x</D></C>\r\n\n</A>\n\r\n",
      "<A>x<B>y</B></A>",
      "<A>x</B></AA></A></A>",
      "<A>1</A>\0\xFF\xC3\0 <B>"s,
      "<A>a\0b</A>"s,
      "<\u00E9\U0001F941>\u20AC</\u00E9\U0001F941>",
      nested(1000),
      nested(1024),
      "<A>" + repeated(100'000, "<B>1</B>") + "</A>",
      "<" + std::string(100'000, 'n') + "/>",
  };
  for (const std::string& bytes : kept)
    EXPECT_EQ(roundTrip(bytes), bytes) << bytes.substr(0, 80);
}

TEST(SpdDocument, ChangesOnlyLeadingWhitespaceOfTextAndIllFormedText) {
  const std::pair<std::string, std::string> cases[] = {
      {"<A>  </A>", "<A></A>"},
      {"<A>\r\n  7 \n</A>", "<A>7 \n</A>"},
      {"<A> <B>\t</B> </A> ", "<A> <B></B> </A> "},
      {"<A>\xFF</A>\xFF", "<A>\uFFFD</A>\xFF"},
      {"<A>\n<B\x80/>\t<C>1</C></A>", "<A>\n<B\uFFFD/>\t<C>1</C></A>"},
      {"<\xFF>\n <\xC0\xAF>1</\uFFFD\uFFFD>\n</\uFFFD>", "<\uFFFD>\n <\uFFFD\uFFFD>1</\uFFFD\uFFFD>\n</\uFFFD>"},
      // By maximal subparts: a truncated sequence is one, an impossible byte is one.
      {"<A>\xE2\x82|\xF0\x9F\xA5|\xE0\x80|\xED\xA0\x80|\xF4\x90|\xF0\x9F\xE2\x82\xAC</A>",
       "<A>\uFFFD|\uFFFD|\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD|\uFFFD\u20AC</A>"},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(roundTrip(bytes), expected);
}

TEST(SpdDocument, ReadsTheTree) {
  std::string buffer = "<Kit>\r\n\t<Level>100 </Level>\r\n\t<Mark>x<B>y</B></Mark>\t<Tag />\r\n</Kit>\r\n";
  const SpdDocument document = SpdDocument::parse(buffer);
  buffer.assign(buffer.size(), '#');  // the caller reads its next file into it
  const SpdNode& root = document.root;
  EXPECT_EQ(root.name(), "Kit");
  EXPECT_EQ(root.leadingWhitespace(), "");
  EXPECT_EQ(root.closingWhitespace(), "\r\n");
  ASSERT_EQ(root.children().size(), 3U);
  EXPECT_EQ(root.children()[0].text(), "100 ");
  EXPECT_EQ(root.children()[0].leadingWhitespace(), "\r\n\t");
  EXPECT_EQ(root.children()[0].closingWhitespace(), std::nullopt);
  EXPECT_EQ(root.children()[1].text(), "x<B>y</B>");
  EXPECT_EQ(root.children()[2].name(), "Tag ");
  EXPECT_EQ(root.children()[2].content(), SpdNode::Content::selfClosing);
  EXPECT_EQ(document.trailingBytes, "\r\n");
}

TEST(SpdDocument, FirstLineEndDecidesForNewLines) {
  const std::pair<std::string, std::string> cases[] = {
      {"<A>\r\n\t<B>1</B>\n</A>\n", "<A>\r\n\t<B>1</B>\r\n\t<N>5</N>\n</A>\n"},
      {"<A>\n\t<B>1</B>\r\n</A>", "<A>\n\t<B>1</B>\n\t<N>5</N>\r\n</A>"},
      {"<A><B>1</B></A>", "<A><B>1</B>\n\t<N>5</N></A>"},
      {"<A><B>1</B></A>\r\n", "<A><B>1</B>\r\n\t<N>5</N></A>\r\n"},
      {"<A><B>1\r2</B></A>", "<A><B>1\r2</B>\n\t<N>5</N></A>"},
  };
  for (const auto& [bytes, expected] : cases) {
    SpdDocument document = SpdDocument::parse(bytes);
    document.root.setLeaf("N", 5);
    EXPECT_EQ(document.serialize(), expected);
  }
}

TEST(SpdDocument, LaysOutWhatTheProgramMade) {
  const SpdNode leaf = SpdNode::leaf("Wv", "205");
  SpdDocument document{SpdNode::container("L", {leaf, SpdNode::container("E", {}), SpdNode::selfClosing("S")}),
                       LineSeparator::lf, "\n"};
  EXPECT_EQ(document.serialize(), "<L>\n\t<Wv>205</Wv>\n\t<E>\n\t</E>\n\t<S/>\n</L>\n");
  document.lineSeparator = LineSeparator::crlf;
  document.root = SpdNode::container("L", {SpdNode::container("M", {leaf})});
  EXPECT_EQ(document.serialize(), "<L>\r\n\t<M>\r\n\t\t<Wv>205</Wv>\r\n\t</M>\r\n</L>\n");
  // An element read from a file keeps its own whitespace, but a root has none in front of it.
  document.root = SpdDocument::parse("<A>  <B>\t<C/></B></A>").root.children().front();
  EXPECT_EQ(document.serialize(), "<B>\t<C/></B>\n");
}

// Each would take hours if a step looked at the rest of the file.
TEST(SpdDocument, HostileFilesFailOrReadInLinearTime) {
  constexpr std::size_t size = 1'000'000;
  const std::string half(size / 2, '<');
  EXPECT_THROW(SpdDocument::parse(repeated(size, "<A>")), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<A>" + repeated(size, "<B></B>")), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<A>" + repeated(size, "<B>1</B>") + "<A>1"), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<" + half + ">x" + repeated(size / 4, "</<<<")), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<" + half + ">x</" + half + half), SpdParseError);
  EXPECT_EQ(SpdDocument::parse("<A>x" + repeated(size, "</") + "</A>").root.text().size(), 2 * size + 1);
  EXPECT_EQ(SpdDocument::parse("<A>" + std::string(size, '\xFF') + "</A>").root.text().size(), 3 * size);
  EXPECT_EQ(SpdDocument::parse("<A>" + repeated(size, "</>") + "</A>").root.children().size(), size);
}

}  // namespace
}  // namespace tamboro
