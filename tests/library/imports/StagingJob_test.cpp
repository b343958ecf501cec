#include "library/imports/StagingJob.h"

#include <sys/stat.h>

#include "library/saving/SaveFixture.h"
#include "platform/RealFileSystem.h"
#include "support/TemporaryFolder.h"

namespace tamboro::test {
namespace {

TEST(StagingJob, CopiesAndReplaces) {
  MemoryFileSystem files;
  const std::string audio(600000, 'a');
  writeTree(files, "/home", {{"kick.wav", audio}, {"empty.wav", ""}});
  files.addLink("/home/link.wav", "kick.wav");
  stageAudio(files, "/home/kick.wav", "/staging/02/kick.wav");
  stageAudio(files, "/home/empty.wav", "/staging/02/empty.wav");
  stageAudio(files, "/home/link.wav", "/staging/02/empty.wav");
  EXPECT_THAT(readTree(files, "/staging"), IsTree(Tree{{"02/kick.wav", audio}, {"02/empty.wav", audio}}));
  stageAudio(files, "/staging/02/kick.wav", "/staging/02/kick.wav");
  EXPECT_EQ(readFile(files, "/staging/02/kick.wav"), audio);
}

TEST(StagingJob, RefusesWithoutATrace) {
  MemoryFileSystem files;
  writeTree(files, "/", {{"home/kick.wav", "kick"}, {"staging/02/folder/file", "mine"}, {"staging/03", "a file"}});
  files.addSpecial("/home/pipe.wav");
  files.addLink("/home/pipe link.wav", "pipe.wav");
  files.addLink("/home/dangling.wav", "gone.wav");
  const Tree before = readTree(files, "/staging");
  for (const char* source :
       {"/home", "/home/gone.wav", "/home/dangling.wav", "/home/pipe.wav", "/home/pipe link.wav", "/home/kick.wav/x"})
    EXPECT_THROW(stageAudio(files, source, "/staging/04/a.wav"), FileError) << source;
  EXPECT_THROW(stageAudio(files, "/home/kick.wav", "/staging/02/folder"), FileError);
  EXPECT_THROW(stageAudio(files, "/home/kick.wav", "/staging/03/a.wav"), FileError);
  EXPECT_THAT(readTree(files, "/staging"), IsTree(before));
}

TEST(StagingJob, LeavesNoPartWhateverFails) {
  sweepFailures([](const auto& fail, bool pulled) {
    MemoryFileSystem files;
    const std::string audio(600000, 'a');
    writeTree(files, "/", {{"home/kick.wav", audio}, {"staging/02/kick.wav", "old"}, {"staging/02/other.wav", "b"}});
    Tree expected = readTree(files, "/staging");
    FailingFileSystem failing(files);
    fail(failing);
    bool thrown = false;
    try {
      stageAudio(failing, "/home/kick.wav", "/staging/02/kick.wav");
    } catch (const FileError&) {
      thrown = true;
    }
    if (!thrown) expected["02/kick.wav"] = audio;
    Tree staged = readTree(files, "/staging");
    if (pulled) staged.erase("02/.tamboro-1.tmp");
    EXPECT_THAT(staged, IsTree(expected));
    return failing.count();
  });
}

TEST(StagingJob, DoesNotWaitForPipesAndDevices) {
  const TemporaryFolder folder;
  const std::unique_ptr<FileSystem> files = makeRealFileSystem();
  ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  for (const Path& source : {folder / "pipe.wav", Path("/dev/zero"), folder.path()})
    EXPECT_THROW(stageAudio(*files, source, folder / "staging/a.wav"), FileError) << source;
  writeFile(*files, folder / "a.wav", "audio");
  stageAudio(*files, folder / "a.wav", folder / "staging/02/a.wav");
  EXPECT_THAT(readTree(*files, folder / "staging"), IsTree(Tree{{"02/a.wav", "audio"}}));
}

}  // namespace
}  // namespace tamboro::test
