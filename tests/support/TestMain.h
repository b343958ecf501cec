#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStandardPaths>

namespace tamboro::test {

/// The main function of a test binary whose cases need an application object. Standard locations lead into a test
/// area, so that no case reaches the user's own files.
template<typename Application>
int runTests(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  QStandardPaths::setTestModeEnabled(true);
  const Application application(argc, argv);
  return RUN_ALL_TESTS();
}

}  // namespace tamboro::test
