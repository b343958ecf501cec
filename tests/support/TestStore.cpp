#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <set>

#include "library/LibraryError.h"

namespace tamboro::test {
namespace {

std::string leaf(const std::string& indent, const std::string& name, const std::string& text) {
  return "\n" + indent + "<" + name + ">" + text + "</" + name + ">";
}

std::string cells(const std::string& indent, const std::string& prefix, const std::string& text, std::size_t count) {
  std::string out;
  for (std::size_t i = 0; i < count; ++i)
    out += leaf(indent, prefix + std::to_string(i), std::to_string(i < text.size() ? text[i] : 0));
  return out;
}

std::string pad(int wave, int note) {
  return "\n\t<PadPrm>" + leaf("\t\t", "Wv", std::to_string(wave)) + leaf("\t\t", "WvLevel", "90") +
         leaf("\t\t", "Mystery", "<Deep/>  ") + leaf("\t\t", "NoteNum", std::to_string(note)) + "\n\t</PadPrm>";
}

std::string fifteenPads() {
  std::string pads;
  for (int i = 0; i < 15; ++i)
    pads += pad(i == 0 ? 205 : i == 1 ? 206 : -1, 60 + i);
  return pads;
}

std::string kit(const std::string& name, int level, const std::string& pads, const std::string& trailing) {
  return "<KitPrm>" + leaf("\t", "Level", std::to_string(level)) + leaf("\t", "Tempo", "1205") +
         cells("\t", "Nm", name, 8) + cells("\t", "SubNm", "Sub", 16) + leaf("\t", "Unknown", "kept &amp; whole") +
         pads + "\n</KitPrm>" + trailing;
}

std::string sample(const std::string& name, int tag, const std::string& path) {
  return "<WvPrm>" + cells("\t", "Nm", name, 12) + leaf("\t", "Tag", std::to_string(tag)) + leaf("\t", "Tempo", "900") +
         (path.empty() ? "" : leaf("\t", "Path", path)) + "\n</WvPrm>\n";
}

std::string withCrLf(const std::string& text) {
  std::string out;
  for (const char c : text)
    out += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return out;
}

}  // namespace

Tree sampleCard() {
  const auto tag = [](const char* name) { return "\n\t<TagPrm>" + cells("\t\t", "Nm", name, 12) + "\n\t</TagPrm>"; };
  return {
      {"KIT/kit001.spd", withCrLf(kit("Rock", 80, fifteenPads(), "\n"))},
      {"KIT/kit002.spd", kit("Jazz", 100, pad(206, 61) + pad(-1, 62) + pad(999, 63), "\n")},
      {"KIT/kit004.spd", kit("Odd", 70, "\r\n\t<PadPrm/>\n\t<PadPrm>plain</PadPrm>" + pad(207, 40), "")},
      {"KIT/readme.txt", "not a kit"},
      {"WAVE/PRM/00/01.spd", withCrLf(sample("Factory", 0, "00/factory.wav"))},
      {"WAVE/PRM/02/05.spd", withCrLf(sample("Kick", 0, "02/kick.wav"))},
      {"WAVE/PRM/02/06.spd", sample("Snare", 1, "")},
      {"WAVE/PRM/02/07.spd", sample("Tom", 7, "02/tom low.wav")},
      {"WAVE/DATA/00/factory.wav", "factory audio"},
      {"WAVE/DATA/02/kick.wav", "kick audio"},
      {"WAVE/DATA/02/Snare.wav", "snare audio"},
      {"WAVE/DATA/02/tom low.wav", "tom audio"},
      {"SYSTEM/tag_list.spd", withCrLf("<TagList>" + tag("Kick") + tag("Snare") + "\n</TagList>\n")},
      {"SYSTEM/wavelist_name.spd", "old"},
      {"SYSTEM/wavelist_tagnum.spd", "old"},
      {"SYSTEM/wavelist_tagname.spd", "old"},
      {"SYSTEM/setup.bin", std::string("\0\x01\xFF", 3)},
      {"unknown.dat", "kept"},
  };
}

TestStore::TestStore() : library({files, defaults, jobs, timers, panel, staging, backup}) {}

void TestStore::mountCard(const std::string& serial, const Tree& card) {
  files.mount("/media/card", {serial});
  writeTree(files, root, card);
}

void TestStore::open(const Tree& card) {
  mountCard("fat:1234-ABCD", card);
  library.load("/media/card");
}

void TestStore::setReadOnly(bool on) {
  if (!on) return files.failNothing();
  files.failWhere(
      [](const std::string& operation, const Path& path) {
        return path.is_relative() && std::set<std::string>{"create", "makeFolder", "removeFile"}.contains(operation);
      },
      std::errc::read_only_file_system);
}

std::string TestStore::ended(const std::function<void(RolandLibrary::Completion)>& start) {
  std::string text = "it has not ended";
  start([&](const std::exception_ptr& error) { text = textOf(error); });
  jobs.runAll();
  return text;
}

std::string TestStore::save(RolandLibrary::ChangedFiles changed) {
  return ended([&](auto done) { library.save(done, changed); });
}

std::string TestStore::import(const Path& source, const std::string& name, std::int64_t tag) {
  return ended([&](auto done) { library.importWave(source, name, tag, done); });
}

std::string textOf(const std::exception_ptr& error) {
  return errorText(error).toStdString();
}

Tree withoutIndexes(Tree card) {
  std::erase_if(card, [](const auto& file) { return file.first.starts_with("SYSTEM/wavelist_"); });
  return card;
}

std::string replaced(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  EXPECT_EQ(text.find(from, place + 1), std::string::npos) << from;
  return place == std::string::npos ? text : std::string(text).replace(place, from.size(), to);
}

}  // namespace tamboro::test
