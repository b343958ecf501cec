#include "app/SingleInstance.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <fstream>
#include <thread>

#include "support/TemporaryFolder.h"

namespace tamboro {
namespace {

using namespace std::chrono_literals;
using Start = SingleInstance::Start;

TEST(SingleInstance, TheSecondStartBringsTheFirstToTheFront) {
  const test::TemporaryFolder folder;
  SingleInstance first(folder.path() / "data");
  ASSERT_EQ(first.claim(0ms), Start::first);
  QSignalSpy again(&first, &SingleInstance::startedAgain);
  Start second = Start::first;
  std::jthread other([&] { second = SingleInstance(folder.path() / "data").claim(20s); });
  EXPECT_TRUE(again.wait(20000));
  other.join();
  EXPECT_EQ(second, Start::handedOver);
  EXPECT_EQ(SingleInstance(folder.path() / "other").claim(0ms), Start::first) << "another user's";
}

TEST(SingleInstance, AProgramThatEndsGivesItsPlaceOver) {
  const test::TemporaryFolder folder;
  auto first = std::make_unique<SingleInstance>(folder.path());
  ASSERT_EQ(first->claim(0ms), Start::first);
  // It runs no loop any more, as while a last save goes on.
  EXPECT_EQ(SingleInstance(folder.path()).claim(0ms), Start::refused);
  first.reset();
  EXPECT_EQ(SingleInstance(folder.path()).claim(0ms), Start::first);
}

TEST(SingleInstance, NeitherADeadProgramNorALockedFolderStopsAStart) {
  const test::TemporaryFolder folder;
  std::ofstream(folder.path() / "running") << "99999999\ntamboro\n"
                                           << QSysInfo::machineHostName().toStdString() << "\n";
  EXPECT_EQ(SingleInstance(folder.path()).claim(0ms), Start::first);
  std::ofstream(folder.path() / "file");
  EXPECT_EQ(SingleInstance(folder.path() / "file/data").claim(0ms), Start::first);
}

}  // namespace
}  // namespace tamboro
