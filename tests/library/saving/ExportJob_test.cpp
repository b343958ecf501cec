#include "library/saving/ExportJob.h"

#include "library/saving/SaveFixture.h"

namespace tamboro::test {
namespace {

/// The fixture's card and a kit of three samples: on the card, staged, and pending without a file.
struct ExportFixture : SaveFixture {
  ExportFixture() {
    values = {.root = "/card",
              .serial = snapshot.serial,
              .known = {},
              .destination = "/home/kit",
              .kit = kit(1, "11"),
              .kitDoc = SpdDocument{SpdNode::leaf("old", ""), LineSeparator::crlf, "tail"},
              .waves = {sample(2, 1, "02/kick.wav"), sample(3, 0, "03/hat.wav", true), sample(3, 1, "x", true)},
              .waveDocs = {},
              .stagedAudioFiles = {{300, "/staging/hat.wav"}}};
    const auto parameters = [&](std::size_t i) { return waveDocument(values.waves[i], nullptr).serialize(); };
    expected = {{"kit001.spd", kitDocument(values.kit, &*values.kitDoc).serialize()},
                {"WAVE/PRM/02/01.spd", parameters(0)},
                {"WAVE/DATA/02/kick.wav", "kick"},
                {"WAVE/PRM/03/00.spd", parameters(1)},
                {"WAVE/DATA/03/hat.wav", "hat"},
                {"WAVE/PRM/03/01.spd", parameters(2)}};
  }
  std::errc errorOf(FileSystem& system) const {
    try {
      exportKitJob(values, system);
    } catch (const FileError& error) {
      return static_cast<std::errc>(error.code().default_error_condition().value());
    }
    return {};
  }
  Tree exported() const { return readTree(files, "/home/kit"); }

  KitExport values;
  Tree expected;
};

TEST(ExportJob, WritesTheKitAndItsSamples) {
  ExportFixture fixture;
  writeTree(fixture.files, "/home/kit", {{"kit001.spd", "old"}, {"WAVE/DATA/02/kick.wav", "old"}, {"notes", "mine"}});
  fixture.expected["notes"] = "mine";
  for (int i = 0; i < 2; ++i) {
    exportKitJob(fixture.values, fixture.files);
    EXPECT_THAT(fixture.exported(), IsTree(fixture.expected));
  }
  EXPECT_THAT(fixture.card(), IsTree(fixture.before));
}

TEST(ExportJob, OfAKitWithoutSamplesNeedsNoCard) {
  ExportFixture fixture;
  fixture.values.root = "/gone";
  fixture.values.waves.clear();
  exportKitJob(fixture.values, fixture.files);
  EXPECT_EQ(fixture.exported().size(), 1U);
  EXPECT_EQ(fixture.files.status("/home/kit/WAVE").kind, FileKind::none);
}

TEST(ExportJob, LeavesOutPathsThatNameNoAudio) {
  for (const char* path : {"", "../../KIT/kit001.spd", "02/.."}) {
    ExportFixture fixture;
    fixture.values.waves = {sample(2, 1, path)};
    exportKitJob(fixture.values, fixture.files);
    EXPECT_EQ(fixture.exported().size(), 2U) << path;
  }
}

TEST(ExportJob, RefusesDestinationsOnWhichItWouldWriteTheCard) {
  const auto refused = std::errc::operation_not_permitted;
  for (const char* destination :
       {"/card", "/card/", "/home/../card", "/to card", "/card/KIT", "/card/kit", "/to KIT", "/half"}) {
    SCOPED_TRACE(destination);
    ExportFixture fixture;
    makeFolders(fixture.files, "/half");
    fixture.files.addLink("/half/WAVE", "/card/WAVE");
    fixture.files.addLink("/to card", "/card");
    fixture.files.addLink("/to KIT", "/card/KIT");
    fixture.values.destination = destination;
    EXPECT_EQ(fixture.errorOf(fixture.files), refused);
    EXPECT_THAT(fixture.card(), IsTree(fixture.before));
  }
  ExportFixture fixture;
  fixture.values.destination = "/card/exports/kit";
  EXPECT_EQ(fixture.errorOf(fixture.files), std::errc());
}

TEST(ExportJob, StopsAtWhatItCannotCopyOrReplace) {
  using enum std::errc;
  const struct {
    const char* what;
    std::function<void(ExportFixture&)> change;
    std::errc error;
  } cases[] = {
      {"missing audio", [](auto& f) { f.files.removeFile("/card/WAVE/DATA/02/kick.wav"); }, no_such_file_or_directory},
      {"missing staged audio", [](auto& f) { f.files.removeFile("/staging/hat.wav"); }, no_such_file_or_directory},
      {"a folder as audio", [](auto& f) { f.values.stagedAudioFiles[300] = "/staging"; }, is_a_directory},
      {"a pipe as audio",
       [](auto& f) {
         f.files.removeFile("/staging/hat.wav");
         f.files.addSpecial("/staging/hat.wav");
       },
       operation_not_supported},
      {"a folder as target", [](auto& f) { makeFolders(f.files, "/home/kit/kit001.spd"); }, is_a_directory},
      {"a link as target",
       [](auto& f) {
         makeFolders(f.files, "/home/kit");
         f.files.addLink("/home/kit/kit001.spd", "/staging/hat.wav");
       },
       file_exists},
      {"another card", [](auto& f) { f.files.setVolume("/card", {.serial = "OTHER"}); }, no_such_device}};
  for (const auto& [what, change, error] : cases) {
    ExportFixture fixture;
    change(fixture);
    EXPECT_EQ(fixture.errorOf(fixture.files), error) << what;
    EXPECT_TRUE(error != no_such_device || fixture.files.status("/home").kind == FileKind::none);
  }
}

TEST(ExportJob, LeavesEveryFileWholeWhateverFails) {
  sweepFailures([](const auto& fail, bool pulled) {
    ExportFixture fixture;
    writeTree(fixture.files, "/home/kit", {{"kit001.spd", "old"}});
    FailingFileSystem failing(fixture.files);
    fail(failing);
    const bool failed = fixture.errorOf(failing) != std::errc();
    const std::uint64_t count = failing.count();
    for (const auto& [name, bytes] : fixture.exported()) {
      const bool isTemporary = name.find(temporaryName) != std::string::npos;
      const bool isOld = name == "kit001.spd" && bytes == "old";
      EXPECT_TRUE(isTemporary ? pulled : isOld || fixture.expected[name] == bytes) << name;
    }
    EXPECT_TRUE(failed || fixture.exported() == fixture.expected);
    EXPECT_THAT(fixture.card(), IsTree(fixture.before));
    exportKitJob(fixture.values, fixture.files);
    EXPECT_TRUE(pulled || fixture.exported() == fixture.expected);
    return count;
  });
}

TEST(ExportJob, SyncsEachFileAndItsName) {
  ExportFixture fixture;
  fixture.files.clearOperations();
  exportKitJob(fixture.values, fixture.files);
  const std::vector<std::string> steps = fixture.files.operations();
  std::size_t renames = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (!steps[i].starts_with("rename ")) continue;
    ++renames;
    const std::string from = steps[i].substr(7, steps[i].find(".tmp") - 3);
    ASSERT_GE(i, 2U);
    EXPECT_EQ(steps[i - 2], "sync " + from);
    EXPECT_EQ(steps[i + 2], "sync " + Path(from).parent_path().string());
  }
  EXPECT_EQ(renames, fixture.expected.size());
}

}  // namespace
}  // namespace tamboro::test
