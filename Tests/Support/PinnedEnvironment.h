#pragma once

#include <cstdlib>
#include <ctime>
#include <initializer_list>

namespace tavrin::test {

/// The same words, hours and windows wherever the tests run. First thing in `main`.
inline void pinEnvironment() {
  for (const char* name : {"LC_TIME", "LANG", "LANGUAGE"})
    unsetenv(name);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TZ", "Europe/Berlin", 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  tzset();
}

} // namespace tavrin::test
