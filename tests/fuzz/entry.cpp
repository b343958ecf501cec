// What libFuzzer calls.

#include <cstddef>

#include "fuzz/Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  tamboro::fuzz::tryInput({bytes, size});
  return 0;
}
