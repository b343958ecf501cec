// What the naive reader of tests/fuzz, with which the document's fuzz target compares, doesn't tell: the texts that a
// user sees, the layout of what the program makes, and what a hostile file costs.

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

/// What is written of what was read, behind the caller's reading its next file into the buffer.
std::string roundTrip(std::string bytes) {
  const SpdDocument document = SpdDocument::parse(bytes);
  bytes.assign(bytes.size(), '#');
  return document.serialize();
}

TEST(SpdDocument, RefusesWithKindTextAndOffset) {
  const std::tuple<std::string, Kind, const char*, std::size_t, const char*> cases[] = {
      {"", Kind::empty, "", 0, "Empty document"},
      {"\xEF\xBB\xBF<A></A>", Kind::unexpectedByte, "<", 0, "Expected '<' at byte offset 0"},
      {"<A><B>1</B>", Kind::unexpectedByte, "<", 11, "Expected '<' at byte offset 11"},
      {"<A/", Kind::unexpectedByte, "/>", 2, "Expected '/>' at byte offset 2"},
      {"<A><B>1</B></C></A>", Kind::unexpectedByte, "/>", 12, "Expected '/>' at byte offset 12"},
      {"<A", Kind::unterminated, ">", 1, "Unterminated element, expected '>' starting at byte offset 1"},
      {"<A>  1</a>", Kind::unterminated, "</A>", 5, "Unterminated element, expected '</A>' starting at byte offset 5"},
      {"<?xml version=\"1.0\"?>\n<A></A>", Kind::unexpectedByte, "<", 29, "Expected '<' at byte offset 29"},
      {nested(1025), Kind::tooDeep, "", 3072, "Elements nested more than 1024 deep at byte offset 3072"},
  };
  for (const auto& [bytes, kind, expected, offset, text] : cases) {
    SCOPED_TRACE(text);
    try {
      SpdDocument::parse(bytes);
      ADD_FAILURE() << "parses";
    } catch (const SpdParseError& error) {
      EXPECT_EQ(error.kind(), kind);
      EXPECT_EQ(error.expected(), expected);
      EXPECT_EQ(error.offset(), offset);
      EXPECT_EQ(error.text(), text);
    }
  }
}

TEST(SpdDocument, GivesBackWhatItReadButLeadingWhitespaceOfTextAndIllFormedText) {
  const std::string kept[] = {"<></>",
                              "<A>\r\n\t<B>1 </B>\n\t<C />\r\t<D>&amp;</D>\r\n\n</A>\n\r\n",
                              "<A>x<B>y</B></AA></A></A>",
                              "<A>a\0b</A>\0\xFF <B>"s,
                              nested(1024),
                              "<A>" + repeated(100'000, "<B>1</B>") + "</A>"};
  for (const std::string& bytes : kept)
    EXPECT_EQ(roundTrip(bytes), bytes) << bytes.substr(0, 80);
  const std::pair<std::string, std::string> changed[] = {
      {"<A>\r\n \v 7 \n</A>", "<A>\v 7 \n</A>"},
      {"<A> <B>\t</B> </A> ", "<A> <B></B> </A> "},
      {"<\xFF>\n <\xC0\xAF>1</\uFFFD\uFFFD>\n</\uFFFD>\xFF",
       "<\uFFFD>\n <\uFFFD\uFFFD>1</\uFFFD\uFFFD>\n</\uFFFD>\xFF"},
      // By maximal subparts: a truncated sequence is one, an impossible byte is one.
      {"<A>\xE2\x82|\xF0\x9F\xA5|\xE0\x80|\xED\xA0\x80|\xF4\x90|\xF0\x9F\xE2\x82\xAC</A>",
       "<A>\uFFFD|\uFFFD|\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD|\uFFFD\u20AC</A>"},
  };
  for (const auto& [bytes, expected] : changed)
    EXPECT_EQ(roundTrip(bytes), expected);
}

TEST(SpdDocument, FirstLineEndDecidesForNewLines) {
  const std::pair<std::string, std::string> cases[] = {
      {"<A>\r\n\t<B>1</B>\n</A>\n", "<A>\r\n\t<B>1</B>\r\n\t<N>5</N>\n</A>\n"},
      {"<A>\n\t<B>1</B>\r\n</A>", "<A>\n\t<B>1</B>\n\t<N>5</N>\r\n</A>"},
      {"<A><B>1\r2</B></A>", "<A><B>1\r2</B>\n\t<N>5</N></A>"},
      {"<A><B>1</B></A>\r\n", "<A><B>1</B>\r\n\t<N>5</N></A>\r\n"},
  };
  for (const auto& [bytes, expected] : cases) {
    SpdDocument document = SpdDocument::parse(bytes);
    document.root.setLeaf("N", 5);
    EXPECT_EQ(document.serialize(), expected);
  }
}

TEST(SpdDocument, LaysOutWhatTheProgramMade) {
  const SpdNode inner = SpdNode::container("M", {SpdNode::leaf("Wv", "205"), SpdNode::selfClosing("S")});
  SpdDocument document{SpdNode::container("L", {inner, SpdNode::container("E", {})}), LineSeparator::crlf, "\n"};
  EXPECT_EQ(document.serialize(),
            "<L>\r\n\t<M>\r\n\t\t<Wv>205</Wv>\r\n\t\t<S/>\r\n\t</M>\r\n\t<E>\r\n\t</E>\r\n</L>\n");
  // An element read from a file keeps its own whitespace, but a root has none in front of it.
  document.root = SpdDocument::parse("<A>  <B>\t<C/></B></A>").root.children().front();
  EXPECT_EQ(document.serialize(), "<B>\t<C/></B>\n");
}

// Each would take hours if a step looked at the rest of the file.
TEST(SpdDocument, HostileFilesFailOrReadInLinearTime) {
  constexpr std::size_t size = 1'000'000;
  const std::string half(size / 2, '<');
  EXPECT_THROW(SpdDocument::parse(repeated(size, "<A>")), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<A>" + repeated(size, "<B>1</B>") + "<A>1"), SpdParseError);
  EXPECT_THROW(SpdDocument::parse("<" + half + ">x" + repeated(size / 4, "</<<<")), SpdParseError);
  EXPECT_EQ(SpdDocument::parse("<A>" + std::string(size, '\xFF') + "</A>").root.text().size(), 3 * size);
  EXPECT_EQ(SpdDocument::parse("<A>" + repeated(size, "</>") + "</A>").root.children().size(), size);
}

}  // namespace
}  // namespace tamboro
