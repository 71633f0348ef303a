#pragma once

#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/FoldedName.h"
#include "TavrinHost/HostError.h"

#include <fmt/format.h>
#include <functional>
#include <vector>

namespace tavrin {

/// The ways of matching one reference, the nearest first.
template <class T> using ReferenceTiers = std::vector<std::function<bool(const T&)>>;

/// Those that the nearest way of matching finds; empty when none does.
template <class T>
std::vector<const T*> nearest(const std::vector<T>& all, const ReferenceTiers<T>& tiers) {
  std::vector<const T*> found;
  for (const auto& matches : tiers) {
    for (const auto& one : all)
      if (matches(one))
        found.push_back(&one);
    if (!found.empty())
      break;
  }
  return found;
}

/// Throws HostError (ambiguous) that lists the candidates as `describe` puts them.
template <class T, class Describe>
[[noreturn]] void throwAmbiguous(std::string_view reference, const std::vector<const T*>& found,
                                 Describe describe) {
  std::vector<std::string> candidates;
  for (const auto* one : found)
    candidates.push_back(describe(*one));
  throw HostError(ExitCode::ambiguous,
                  translated("\"{reference}\" may be {candidates}",
                             {{"reference", reference}, {"candidates", alternatives(candidates)}}));
}

} // namespace tavrin
