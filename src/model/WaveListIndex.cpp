#include "model/WaveListIndex.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Unicode.h"

namespace tamboro {
namespace {

using Order = std::vector<std::size_t>;  // positions in the list of samples

// What the lists need of a sample, read in one go: a card's samples are megabytes of tree.
struct Sample {
  WaveId id;
  std::int64_t tag;
  std::string key;
};

std::vector<Sample> samplesOf(std::span<const Wave> waves) {
  std::vector<Sample> samples;
  samples.reserve(waves.size());
  for (const Wave& wave : waves)
    samples.push_back({wave.id(), wave.tag(), nameSortKey(wave.name())});
  return samples;
}

Order orderById(const std::vector<Sample>& samples) {
  Order order(samples.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto id = [&samples](std::size_t position) { return samples[position].id; };
  // The store's samples come in this order already.
  if (!std::ranges::is_sorted(order, {}, id)) std::ranges::sort(order, {}, id);
  return order;
}

// A sort key's first sixteen bytes as two numbers that compare like the bytes, so that nearly all of a sort runs on
// numbers side by side. Padding with zeros keeps the order, since a stored name holds no U+0000.
struct NameEntry {
  static constexpr std::size_t prefixSize = 16;

  NameEntry(const Sample& sample, std::size_t at) : id(sample.id), position(at) {
    unsigned char bytes[prefixSize] = {};
    std::memcpy(bytes, sample.key.data(), std::min(sample.key.size(), prefixSize));
    for (std::size_t i = 0; i < prefixSize / 2; ++i) {
      high = high << 8 | bytes[i];
      low = low << 8 | bytes[i + prefixSize / 2];
    }
  }

  std::uint64_t high = 0;
  std::uint64_t low = 0;
  WaveId id;
  std::size_t position;
};

Order orderByName(const std::vector<Sample>& samples) {
  std::vector<NameEntry> entries;
  entries.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i)
    entries.emplace_back(samples[i], i);
  std::ranges::sort(entries, [&samples](const NameEntry& a, const NameEntry& b) {
    if (a.high != b.high) return a.high < b.high;
    if (a.low != b.low) return a.low < b.low;
    const int order = samples[a.position].key.compare(samples[b.position].key);
    return order != 0 ? order < 0 : a.id < b.id;
  });
  Order order;
  order.reserve(entries.size());
  for (const NameEntry& entry : entries)
    order.push_back(entry.position);
  return order;
}

// Each sample's leaf, shared by all lists that name it. Made in the order in which it will be read most, so that the
// walks over a list run along the memory.
std::vector<SpdNode> leavesOf(const std::vector<Sample>& samples, const Order& order) {
  std::vector<SpdNode> leaves(samples.size());
  for (const std::size_t position : order)
    leaves[position] = SpdNode::leaf("Wv", std::to_string(samples[position].id));
  return leaves;
}

SpdDocument document(std::string_view rootName, std::vector<SpdNode> children) {
  return {SpdNode::container(rootName, std::move(children)), LineSeparator::lf, "\n"};
}

SpdDocument nameIndex(const std::vector<SpdNode>& leaves, const Order& order) {
  std::vector<SpdNode> sorted;
  sorted.reserve(order.size());
  for (const std::size_t position : order)
    sorted.push_back(leaves[position]);
  return document("WvListSortbyName", std::move(sorted));
}

SpdDocument tagIndex(std::string_view rootName, const std::vector<Sample>& samples, const std::vector<SpdNode>& leaves,
                     const Order& order, int tagCount) {
  std::vector<std::vector<SpdNode>> leavesOfTag(static_cast<std::size_t>(std::max(tagCount, 0)));
  for (const std::size_t position : order) {
    const std::int64_t tag = samples[position].tag;
    if (tag >= 0 && tag < tagCount) leavesOfTag[static_cast<std::size_t>(tag)].push_back(leaves[position]);
  }
  std::vector<SpdNode> lists;
  lists.reserve(leavesOfTag.size());
  for (std::vector<SpdNode>& list : leavesOfTag)
    lists.push_back(SpdNode::container("WvList", std::move(list)));
  return document(rootName, std::move(lists));
}

constexpr std::string_view tagNumberRoot = "WvListSortbyNum_Tag";
constexpr std::string_view tagNameRoot = "WvListSortbyName_Tag";

}  // namespace

WaveListIndexes buildWaveListIndexes(std::span<const Wave> waves, int tagCount) {
  const std::vector<Sample> samples = samplesOf(waves);
  const Order byName = orderByName(samples);
  const std::vector<SpdNode> leaves = leavesOf(samples, byName);
  return {nameIndex(leaves, byName), tagIndex(tagNumberRoot, samples, leaves, orderById(samples), tagCount),
          tagIndex(tagNameRoot, samples, leaves, byName, tagCount)};
}

SpdDocument buildNameIndex(std::span<const Wave> waves) {
  return buildWaveListIndexes(waves, 0).byName;
}

SpdDocument buildTagNumberIndex(std::span<const Wave> waves, int tagCount) {
  return buildWaveListIndexes(waves, tagCount).byTagNumber;
}

SpdDocument buildTagNameIndex(std::span<const Wave> waves, int tagCount) {
  return buildWaveListIndexes(waves, tagCount).byTagName;
}

}  // namespace tamboro
