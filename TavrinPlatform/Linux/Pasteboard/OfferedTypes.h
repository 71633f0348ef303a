#pragma once

#include "TavrinPlatform/Pasteboard.h"

#include <algorithm>
#include <sstream>

namespace tavrin {

/// What a text is asked for as.
inline constexpr const char* textTargets[] = {"UTF8_STRING", "text/plain;charset=utf-8",
                                              "text/plain", "STRING", "TEXT"};

/// Adds files in the form that file managers paste, what to do and then the addresses, where there
/// are files among `formats`.
inline void addForFileManagers(std::vector<Pasteboard::Format>& formats) {
  const auto files =
      std::ranges::find(formats, Pasteboard::filesType, [](const auto& each) { return each.type; });
  if (files == formats.end() || !files->data)
    return;
  std::string lines = "copy";
  std::istringstream addresses{std::string(files->data->view())};
  for (std::string line; std::getline(addresses, line);) {
    if (line.ends_with('\r'))
      line.pop_back();
    if (!line.empty())
      lines.append(1, '\n').append(line);
  }
  formats.push_back({"x-special/gnome-copied-files",
                     std::make_shared<const Data>(Data::fromText(lines)), lines.size()});
}

} // namespace tavrin
