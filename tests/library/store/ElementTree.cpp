#include "library/store/ElementTree.h"

#include <algorithm>

namespace tamboro::test {
namespace {

std::string takeUntil(const std::string& bytes, std::size_t& at, const char* ends) {
  const std::size_t begin = at;
  at = std::min(bytes.find_first_of(ends, at), bytes.size());
  return bytes.substr(begin, at - begin);
}

Element readElement(const std::string& bytes, std::size_t& at) {
  Element element;
  element.before = takeUntil(bytes, at, "<");
  ++at;
  element.name = takeUntil(bytes, at, "/>");
  if (bytes.at(at) == '/') {
    at += 2;
    element.kind = Element::Kind::selfClosing;
    return element;
  }
  ++at;
  element.text = takeUntil(bytes, at, "<");
  if (bytes.at(at + 1) != '/') {
    element.kind = Element::Kind::container;
    at -= element.text.size();
    element.text.clear();
    while (bytes.at(bytes.find('<', at) + 1) != '/')
      element.children.push_back(readElement(bytes, at));
    element.closing = takeUntil(bytes, at, "<");
  }
  takeUntil(bytes, at, ">");
  ++at;
  return element;
}

bool matches(const Element& expected, const Element& actual) {
  const auto sameSpace = [](const std::string& a, const std::string& b) { return a.empty() || a == b; };
  return expected.name == actual.name && expected.kind == actual.kind && expected.text == actual.text &&
         sameSpace(expected.before, actual.before) && sameSpace(expected.closing, actual.closing) &&
         std::equal(expected.children.begin(), expected.children.end(), actual.children.begin(), actual.children.end(),
                    matches);
}

bool isExpected(const ModelFile& expected, const std::string& actual) {
  if (expected.bytes) return *expected.bytes == actual;
  const ModelFile read = readElements(actual);
  return matches(expected.tree, read.tree) && expected.trailing == read.trailing;
}

}  // namespace

const Element* Element::nth(const std::string& child, int position) const {
  for (const Element& element : children) {
    if (element.name == child && position-- == 0) return &element;
  }
  return nullptr;
}

Element* Element::nth(const std::string& child, int position) {
  return const_cast<Element*>(std::as_const(*this).nth(child, position));
}

int Element::count(const std::string& child) const {
  return static_cast<int>(std::count_if(children.begin(), children.end(), [&](auto& e) { return e.name == child; }));
}

int Element::number(const std::string& child, int fallback) const {
  const Element* found = nth(child, 0);
  return found != nullptr ? std::stoi(found->text) : fallback;
}

void Element::set(const std::string& child, const std::string& value) {
  if (kind != Kind::container) text.clear();
  kind = Kind::container;
  if (Element* found = nth(child, 0)) {
    found->text = value;
  } else {
    children.push_back({{}, child, Kind::leaf, value, {}, {}});
  }
}

std::string Element::cells(const std::string& prefix) const {
  std::string value;
  for (int i = 0; const int code = number(prefix + std::to_string(i), 0); ++i)
    value.push_back(static_cast<char>(code));
  return value;
}

void Element::setCells(const std::string& prefix, std::size_t width, const std::string& value) {
  for (std::size_t i = 0; i < width; ++i)
    set(prefix + std::to_string(i), i < value.size() ? value[i] : 0);
}

void Element::exchange(const std::string& child, int a, int b) {
  Element* first = nth(child, a);
  Element* second = nth(child, b);
  if (first != nullptr && second != nullptr && a != b) std::swap(*first, *second);
}

ModelFile readElements(const std::string& bytes) {
  std::size_t at = 0;
  ModelFile file;
  file.tree = readElement(bytes, at);
  file.trailing = bytes.substr(at);
  return file;
}

std::string differenceOf(const ModelTree& expected, const Tree& actual) {
  std::string text;
  for (const auto& [path, file] : expected) {
    const auto found = actual.find(path);
    if (found == actual.end()) {
      text += path + " is missing\n";
    } else if (!isExpected(file, found->second)) {
      text += path + " differs:\n" + found->second + "\n";
    }
  }
  for (const auto& [path, bytes] : actual) {
    if (!expected.contains(path)) text += path + " is left over\n";
  }
  return text;
}

}  // namespace tamboro::test
