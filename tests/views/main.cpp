#include "support/TestMain.h"
#include "views/LookApplication.h"

int main(int argc, char** argv) {
  return tamboro::test::runTests<tamboro::test::LookApplication>(argc, argv);
}
