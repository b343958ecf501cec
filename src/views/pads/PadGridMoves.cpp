#include "views/pads/PadGridMoves.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <charconv>
#include <tuple>

namespace tamboro {

namespace {

constexpr int side = 3;
constexpr int mainGridSize = side * side;

QStringList parts(const QString& name, qsizetype place) {
  return {name.left(place).trimmed(), name.mid(place).trimmed()};
}

}  // namespace

std::optional<int> padAfterMove(int padIndex, PadMove move, int padCount) {
  if (padIndex >= mainGridSize || padIndex >= padCount) return std::nullopt;
  int row = padIndex / side;
  int column = padIndex % side;
  if (move == PadMove::up) --row;
  if (move == PadMove::down) ++row;
  if (move == PadMove::left) --column;
  if (move == PadMove::right) ++column;
  const int target = std::clamp(row, 0, side - 1) * side + std::clamp(column, 0, side - 1);
  return target < padCount ? target : padIndex;
}

std::optional<WaveId> droppedWaveId(const QString& text) {
  const std::string bytes = text.toStdString();
  const char* start = bytes.data();
  const char* end = start + bytes.size();
  // The standard's reader knows the minus sign only.
  if (bytes.size() > 1 && bytes.front() == '+' && bytes[1] != '-') ++start;
  WaveId id = 0;
  const auto [stop, error] = std::from_chars(start, end, id);
  return error == std::errc() && stop == end ? std::optional(id) : std::nullopt;
}

QStringList padNameLines(const QString& name, double width, const std::function<double(const QString&)>& widthOf) {
  if (widthOf(name) <= width) return {name};
  // Better is: fits, stands at a break, has the shorter longest line; of equals the one further on.
  using Rank = std::tuple<bool, bool, double>;
  std::optional<Rank> best;
  QStringList lines{name};
  QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, name);
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
  while (characters.toNextBoundary() > 0 && characters.position() < name.size()) {
    const QStringList tried = parts(name, characters.position());
    if (tried.first().isEmpty() || tried.last().isEmpty()) continue;
    breaks.setPosition(characters.position());
    const double longest = std::max(widthOf(tried.first()), widthOf(tried.last()));
    const Rank rank{longest <= width, breaks.isAtBoundary(), -longest};
    if (best && rank < *best) continue;
    best = rank;
    lines = tried;
  }
  return lines;
}

}  // namespace tamboro
