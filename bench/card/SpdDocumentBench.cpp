// What the document tree costs on a card of 100 kits and 10,000 samples: reading and writing against a general XML
// parser, memory against the size of the files, one edit of a pad against copying the bytes of its kit.

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <pugixml.hpp>
#include <vector>

#include "card/SpdDocument.h"
#include "card/SyntheticCard.h"

namespace tamboro::bench {
namespace {

constexpr int rounds = 25;

/// Keeps the compiler from seeing that nobody wants a result.
void use(const void* result) {
  asm volatile("" : : "g"(result) : "memory");
}

/// The calling thread's processor time: what else runs on the machine doesn't count.
double secondsNow() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template<typename Work>
double seconds(const Work& work) {
  const double start = secondsNow();
  work();
  return secondsNow() - start;
}

/// How many times as long `work` takes as `peer`. The two take turns, and the best of each counts: a disturbance only
/// ever adds.
template<typename Work, typename Peer>
double ratio(const char* name, const Work& work, const Peer& peer) {
  double ours = 1e9;
  double theirs = 1e9;
  for (int i = 0; i < rounds; ++i) {
    ours = std::min(ours, seconds(work));
    theirs = std::min(theirs, seconds(peer));
  }
  std::fprintf(stderr, "%s: %.3f ms against %.3f ms\n", name, ours * 1e3, theirs * 1e3);
  return ours / theirs;
}

bool report(const char* name, double measured, double limit) {
  std::printf("%-24s %8.3f %8.3f\n", name, measured, limit);
  return measured <= limit;
}

void loadPeer(pugi::xml_document& document, const std::string& bytes) {
  // The cheapest flags under which it keeps the whitespace between elements.
  constexpr unsigned flags = pugi::parse_minimal | pugi::parse_ws_pcdata;
  if (!document.load_buffer(bytes.data(), bytes.size(), flags, pugi::encoding_utf8)) std::abort();
}

bool measureParse(const char* name, const std::vector<std::string>& files) {
  const auto ours = [&] {
    for (const std::string& bytes : files) {
      const SpdDocument document = SpdDocument::parse(bytes);
      use(&document);
    }
  };
  const auto theirs = [&] {
    for (const std::string& bytes : files) {
      pugi::xml_document document;
      loadPeer(document, bytes);
      use(&document);
    }
  };
  return report(name, ratio(name, ours, theirs), 0.7);
}

std::size_t heapInUse() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::size_t sizeOf(const std::vector<std::string>& files) {
  std::size_t size = 0;
  for (const std::string& bytes : files)
    size += bytes.size();
  return size;
}

bool measureHeap(const std::vector<std::string>& files) {
  const std::size_t before = heapInUse();
  std::vector<SpdDocument> documents;
  documents.reserve(files.size());
  for (const std::string& bytes : files)
    documents.push_back(SpdDocument::parse(bytes));
  const std::size_t held = heapInUse() - before;
  return report("heap_per_input_byte", static_cast<double>(held) / static_cast<double>(sizeOf(files)), 4.0);
}

/// One edit as the store makes it: a snapshot, a changed pad, and what tells whether anything changed.
void editPad(SpdNode& stored, std::int64_t value) {
  SpdNode kit = stored;
  const SpdNode before = *kit.child("PadPrm", 7);
  SpdNode pad = before;
  pad.setLeaf("WvLevel", value);
  if (pad == before) std::abort();
  kit.replaceChild("PadPrm", 7, pad);
  if (kit == stored) std::abort();
  stored = std::move(kit);
}

bool measurePadEdit(const std::string& bytes) {
  constexpr int edits = 1000;
  SpdNode kit = SpdDocument::parse(bytes).root;
  std::string copy(bytes.size(), '\0');
  std::int64_t value = 0;
  const auto ours = [&] {
    for (int i = 0; i < edits; ++i)
      editPad(kit, 1000 + ++value);
  };
  const auto theirs = [&] {
    for (int i = 0; i < edits; ++i) {
      std::memcpy(copy.data(), bytes.data(), bytes.size());
      use(copy.data());
    }
  };
  return report("pad_edit_per_kit_copy", ratio("pad edit x 1000", ours, theirs), 8.0);
}

struct PeerWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override { bytes.append(static_cast<const char*>(data), size); }
  std::string bytes;
};

bool measureSerialize(const std::vector<std::string>& files) {
  std::vector<SpdDocument> documents;
  std::vector<pugi::xml_document> peers(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    documents.push_back(SpdDocument::parse(files[i]));
    loadPeer(peers[i], files[i]);
  }
  const auto ours = [&] {
    for (const SpdDocument& document : documents)
      use(document.serialize().data());
  };
  const auto theirs = [&] {
    for (const pugi::xml_document& document : peers) {
      PeerWriter writer;
      document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
      use(writer.bytes.data());
    }
  };
  return report("serialize_kits", ratio("serialize_kits", ours, theirs), 1.0);
}

int run() {
  const SyntheticCard card(100, 10'000);
  std::vector<std::string> all = card.kits;
  all.insert(all.end(), card.samples.begin(), card.samples.end());
  std::fprintf(stderr, "%zu files, %zu bytes; a kit %zu, a sample %zu\n", all.size(), sizeOf(all),
               card.kits.front().size(), card.samples.front().size());
  bool kept = measureHeap(all);
  kept &= measureParse("parse_card", all);
  kept &= measureParse("parse_kits", card.kits);
  kept &= measureParse("parse_samples", card.samples);
  kept &= measurePadEdit(card.kits.front());
  kept &= measureSerialize(card.kits);
  return kept ? 0 : 1;
}

}  // namespace
}  // namespace tamboro::bench

int main() {
  return tamboro::bench::run();
}
