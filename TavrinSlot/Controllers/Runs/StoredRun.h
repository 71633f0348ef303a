#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinPlatform/UserDefaults.h"

namespace tavrin {

/// The run stored under `key`; `fresh` where there is none or it does not decode.
template <class Run>
Run storedRun(const UserDefaults& defaults, const std::string& key, Run fresh) {
  try {
    if (const auto stored = defaults.value(key))
      return decode<Run>(*stored);
  } catch (const CodingError&) {
    // What cannot be read is replaced at the next change.
  }
  return fresh;
}

/// Stores `run` under `key`. One without a JSON form, as with a time that is not finite, is not
/// saved.
template <class Run> void storeRun(UserDefaults& defaults, const std::string& key, const Run& run) {
  try {
    defaults.set(key, encode(run));
  } catch (const JSONError&) {
    // What was stored last stays.
  }
}

} // namespace tavrin
