#include "support/TestStore.h"

#include <gtest/gtest.h>

#include "library/LibraryError.h"

namespace tamboro::test {
namespace {

std::string cells(const std::string& prefix, const std::string& text, std::size_t count, const std::string& lineEnd,
                  const std::string& indent) {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) {
    const int code = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    const std::string name = prefix + std::to_string(i);
    out += lineEnd + indent + "<" + name + ">" + std::to_string(code) + "</" + name + ">";
  }
  return out;
}

std::string pad(int wave, int note, const std::string& lineEnd) {
  const std::string in = lineEnd + "\t\t";
  return lineEnd + "\t<PadPrm>" + in + "<Wv>" + std::to_string(wave) + "</Wv>" + in + "<WvLevel>90</WvLevel>" + in +
         "<Mystery><Deep/>  </Mystery>" + in + "<NoteNum>" + std::to_string(note) + "</NoteNum>" + lineEnd +
         "\t</PadPrm>";
}

std::string kit(const std::string& name, int level, const std::string& pads, const std::string& lineEnd,
                const std::string& trailing) {
  const std::string in = lineEnd + "\t";
  return "<KitPrm>" + in + "<Level>" + std::to_string(level) + "</Level>" + in + "<Tempo>1205</Tempo>" +
         cells("Nm", name, 8, lineEnd, "\t") + cells("SubNm", "Sub", 16, lineEnd, "\t") + in +
         "<Unknown>kept &amp; whole</Unknown>" + pads + lineEnd + "</KitPrm>" + trailing;
}

std::string sample(const std::string& name, int tag, const std::string& path, const std::string& lineEnd) {
  const std::string in = lineEnd + "\t";
  return "<WvPrm>" + cells("Nm", name, 12, lineEnd, "\t") + in + "<Tag>" + std::to_string(tag) + "</Tag>" + in +
         "<Tempo>900</Tempo>" + (path.empty() ? "" : in + "<Path>" + path + "</Path>") + lineEnd + "</WvPrm>" + lineEnd;
}

std::string fifteenPads(const std::string& lineEnd) {
  std::string pads;
  for (int i = 0; i < 15; ++i)
    pads += pad(i == 0 ? 205 : i == 1 ? 206 : -1, 60 + i, lineEnd);
  return pads;
}

}  // namespace

Tree sampleCard() {
  const std::string crlf = "\r\n";
  const std::string lf = "\n";
  const std::string tags = "<TagList>\r\n\t<TagPrm>" + cells("Nm", "Kick", 12, crlf, "\t\t") +
                           "\r\n\t</TagPrm>\r\n\t<TagPrm>" + cells("Nm", "Snare", 12, crlf, "\t\t") +
                           "\r\n\t</TagPrm>\r\n</TagList>\r\n";
  const std::string oddPads = "\r\n\t<PadPrm/>\n\t<PadPrm>plain</PadPrm>" + pad(207, 40, lf);
  return {
      {"KIT/kit001.spd", kit("Rock", 80, fifteenPads(crlf), crlf, crlf)},
      {"KIT/kit002.spd", kit("Jazz", 100, pad(206, 61, lf) + pad(-1, 62, lf) + pad(999, 63, lf), lf, lf)},
      {"KIT/kit004.spd", kit("Odd", 70, oddPads, lf, "")},
      {"KIT/readme.txt", "not a kit"},
      {"WAVE/PRM/00/01.spd", sample("Factory", 0, "00/factory.wav", crlf)},
      {"WAVE/PRM/02/05.spd", sample("Kick", 0, "02/kick.wav", crlf)},
      {"WAVE/PRM/02/06.spd", sample("Snare", 1, "", lf)},
      {"WAVE/PRM/02/07.spd", sample("Tom", 7, "02/tom low.wav", lf)},
      {"WAVE/DATA/00/factory.wav", "factory audio"},
      {"WAVE/DATA/02/kick.wav", "kick audio"},
      {"WAVE/DATA/02/Snare.wav", "snare audio"},
      {"WAVE/DATA/02/tom low.wav", "tom audio"},
      {"SYSTEM/tag_list.spd", tags},
      {"SYSTEM/wavelist_name.spd", "old"},
      {"SYSTEM/wavelist_tagnum.spd", "old"},
      {"SYSTEM/wavelist_tagname.spd", "old"},
      {"SYSTEM/setup.bin", std::string("\0\x01\xFF", 3)},
      {"unknown.dat", "kept"},
  };
}

TestStore::TestStore() : TestStore(ownFiles, ownFiles) {}

TestStore::TestStore(MemoryFileSystem& memory, FileSystem& through)
    : files(memory), library({through, defaults, jobs, timers, panel, staging, backup}) {}

void TestStore::mountCard(const std::string& serial, const Tree& card) {
  files.mount("/media/card", {serial, {1U << 30U, 4096}, false});
  writeTree(files, root, card);
}

void TestStore::open(const Tree& card) {
  mountCard("fat:1234-ABCD", card);
  library.load("/media/card");
}

std::string TestStore::save(RolandLibrary::ChangedFiles changed) {
  std::string text = "the save has not ended";
  library.save([&](const std::exception_ptr& error) { text = textOf(error); }, changed);
  jobs.runAll();
  return text;
}

std::string TestStore::import(const Path& source, const std::string& name, std::int64_t tag) {
  std::string text = "the import has not ended";
  library.importWave(source, name, tag, [&](const std::exception_ptr& error) { text = textOf(error); });
  jobs.runAll();
  return text;
}

std::string textOf(const std::exception_ptr& error) {
  return error ? errorText(error).toStdString() : std::string();
}

Tree withoutIndexes(Tree card) {
  std::erase_if(card, [](const auto& file) { return file.first.starts_with("SYSTEM/wavelist_"); });
  return card;
}

std::string replaced(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  EXPECT_EQ(text.find(from, place + 1), std::string::npos) << from;
  std::string result = text;
  return place == std::string::npos ? result : result.replace(place, from.size(), to);
}

}  // namespace tamboro::test
