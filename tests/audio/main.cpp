#include <QCoreApplication>

#include "support/TestMain.h"

#if defined(__SANITIZE_ADDRESS__)
// SDL leaves objects of 88 bytes of the sound server's library behind as devices are opened and closed.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libpulse.so\n";
}
#endif

int main(int argc, char** argv) {
  return tamboro::test::runTests<QCoreApplication>(argc, argv);
}
