#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavrin {

/// The command of the system monitor that belongs to the desktop best: one made for
/// `currentDesktop` (as XDG_CURRENT_DESKTOP lists them, with colons) before any other. Programs for
/// a terminal, hidden ones and those of another desktop alone do not count. Empty where there is
/// none. `folders` hold desktop entries, the first of a name counts.
std::vector<std::string> systemMonitorCommand(const std::vector<std::filesystem::path>& folders,
                                              const std::string& currentDesktop);

} // namespace tavrin
