#include "library/imports/StagingJob.h"

#include <sys/stat.h>

#include "library/FailureSweep.h"
#include "platform/RealFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Tree.h"

namespace tamboro::test {
namespace {

TEST(StagingJob, RefusesWithoutATraceAndWaitsForNoPipe) {
  const TemporaryFolder folder;
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  const Path staging = folder / "staging";
  writeTree(*files, folder.path(), {{"kick.wav", "kick"}, {"staging/02/folder/file", "mine"}});
  ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  std::filesystem::create_symlink("gone.wav", folder / "dangling.wav");
  for (const Path& source : {folder / "pipe.wav", Path("/dev/zero"), folder.path(), folder / "dangling.wav"})
    EXPECT_THROW(stageAudio(*files, source, staging / "04/a.wav"), FileError) << source;
  EXPECT_THROW(stageAudio(*files, folder / "kick.wav", staging / "02/folder"), FileError);
  EXPECT_THAT(readTree(*files, staging), IsTree(Tree{{"02/folder/file", "mine"}}));
  std::filesystem::create_symlink("kick.wav", folder / "link.wav");
  stageAudio(*files, folder / "link.wav", staging / "03/a.wav");
  EXPECT_EQ(readFile(*files, staging / "03/a.wav"), "kick");
}

TEST(StagingJob, ReplacesWholeOrLeavesWhatStandsThereWhateverFails) {
  for (const char* old : {"", "02/kick.wav"}) {
    sweepFailures([&](const auto& fail, bool isPulled) {
      MemoryFileSystem files;
      const std::string audio(600000, 'a');
      writeTree(files, "/", {{"home/kick.wav", audio}, {"staging/02/other.wav", "b"}});
      if (*old != 0) writeFile(files, Path("/staging") / old, "old");
      Tree expected = readTree(files, "/staging");
      fail(files);
      try {
        stageAudio(files, "/home/kick.wav", "/staging/02/kick.wav");
        expected["02/kick.wav"] = audio;
      } catch (const FileError&) {
        // What a card's or a disk's end leaves can't be tidied up any more; nobody reads it.
        if (isPulled && *old == 0) expected.erase("02/kick.wav");
      }
      const std::uint64_t count = files.count();
      files.failNothing();
      Tree staged = readTree(files, "/staging");
      if (isPulled) std::erase_if(staged, [&](const auto& file) { return !expected.contains(file.first); });
      EXPECT_THAT(staged, IsTree(expected));
      return count;
    });
  }
}

}  // namespace
}  // namespace tamboro::test
