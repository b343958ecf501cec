#include <QCoreApplication>

#include "support/TestMain.h"

int main(int argc, char** argv) {
  return tamboro::test::runTests<QCoreApplication>(argc, argv);
}
