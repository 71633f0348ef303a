#pragma once

#include "TavrinCore/Text/Texts.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavrin {

/// What a desktop has of all that widgets can use, at the moment in which it was asked for.
struct DesktopReport {
  enum class State : std::uint8_t {
    /// There, and used.
    good,
    /// There, and something of it is missing; or something stands in for it.
    limited,
    missing,
  };
  struct Item {
    /// A short word that stays the same from run to run: "bus", "surface", "keyring" ....
    std::string topic;
    State state = State::good;
    /// What is there, or what is not; one sentence for the user.
    std::string sentence;
    /// What the user can do about it, one sentence; empty where there is nothing to do.
    std::string remedy = {};
    /// The JSON keys of the kinds of widget that go without something; empty where all or none do.
    std::vector<std::string> kinds = {};
  };

  /// In the order in which they are to be shown.
  std::vector<Item> items;
};

/// "good", "limited" or "missing": whoever shows it translates it.
constexpr const char* name(DesktopReport::State state) {
  switch (state) {
  case DesktopReport::State::good:
    return marked("good");
  case DesktopReport::State::limited:
    return marked("limited");
  case DesktopReport::State::missing:
    return marked("missing");
  }
  return marked("missing");
}

} // namespace tavrin
