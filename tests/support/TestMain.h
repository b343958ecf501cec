#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStandardPaths>

#if defined(__SANITIZE_THREAD__)
// The toolkit's library isn't built for the thread sanitizer, which therefore takes the locks inside QThread's own
// wait condition for races when a thread object goes. Nor is the sound server's, whose lists of free packets pass
// memory between its own threads by atomics alone; it calls nothing of ours. Nothing of ours is hidden by this.
extern "C" __attribute__((used)) inline const char*
__tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "race:QWaitCondition::~QWaitCondition\n"
         "race:libpulsecommon\n";
}
#endif

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
