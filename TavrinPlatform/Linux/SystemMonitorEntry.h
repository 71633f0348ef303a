#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// The command in an Exec line of a freedesktop.org desktop entry, split into words by its rules of
/// quoting, its field codes left out.
std::vector<std::string> execWords(std::string_view exec);

/// The command of the system monitor that belongs to the desktop best: one made for
/// `currentDesktop` (as XDG_CURRENT_DESKTOP lists them, with colons) before any other. Programs for
/// a terminal, hidden ones and those of another desktop alone do not count. Empty where there is
/// none. `folders` hold desktop entries, the first of a name counts.
std::vector<std::string> systemMonitorCommand(const std::vector<std::filesystem::path>& folders,
                                              const std::string& currentDesktop);

} // namespace tavrin
