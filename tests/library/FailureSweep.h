#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/MemoryFileSystem.h"

namespace tamboro::test {

inline const std::string temporaryName = ".tamboro-";

/// Calls `attempt(fail, isPulled)` on and on, where `fail` sets a file system up to fail at the first, the second, the
/// third ... operation: only that one, then that one and all behind it (a card that has been pulled). `attempt` returns
/// its file system's count; the sweep ends when that is below the operation to fail.
template<typename Attempt>
void sweepFailures(const Attempt& attempt) {
  for (const bool isPulled : {false, true}) {
    for (std::uint64_t number = 1;; ++number) {
      SCOPED_TRACE((isPulled ? "pulled at operation " : "failed operation ") + std::to_string(number));
      const auto fail = [&](MemoryFileSystem& files) { isPulled ? files.failFrom(number) : files.failAt(number); };
      if (attempt(fail, isPulled) < number) break;
      ASSERT_LT(number, 5000U);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace tamboro::test
