#include "make_card/SpdText.h"

namespace tamboro {

void SpdText::open(std::string_view name) {
  indent();
  text_.append("<").append(name).append(">");
  endLine();
  open_.emplace_back(name);
}

void SpdText::close() {
  const std::string name = open_.back();
  open_.pop_back();
  indent();
  text_.append("</").append(name).append(">");
  endLine();
}

void SpdText::leaf(std::string_view name, std::string_view text) {
  indent();
  text_.append("<").append(name).append(">").append(text).append("</").append(name).append(">");
  endLine();
}

void SpdText::leaf(std::string_view name, std::int64_t value) {
  leaf(name, std::string_view(std::to_string(value)));
}

void SpdText::selfClosing(std::string_view name) {
  indent();
  text_.append("<").append(name).append("/>");
  endLine();
}

void SpdText::name(const elements::NameCells& cells, std::string_view text) {
  for (int cell = 0; cell < cells.count; ++cell) {
    const auto position = static_cast<std::size_t>(cell);
    const unsigned char code = position < text.size() ? static_cast<unsigned char>(text[position]) : 0;
    leaf(std::string(cells.prefix) + std::to_string(cell), std::int64_t{code});
  }
}

void SpdText::indent() {
  text_.append(open_.size(), '\t');
}

void SpdText::endLine() {
  // Mixed files start with CR LF, so that the ending which decides for new lines is not the one of most of them.
  const bool crlf = lineEnds_ == LineEnds::crlf || (lineEnds_ == LineEnds::mixed && lines_ % 3 == 0);
  text_.append(crlf ? "\r\n" : "\n");
  ++lines_;
}

}  // namespace tamboro
