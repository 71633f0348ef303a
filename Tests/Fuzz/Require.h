#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer with a finding where something that always holds does not.
inline void require(bool holds, const char* what = "what always does") {
  if (holds)
    return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}
