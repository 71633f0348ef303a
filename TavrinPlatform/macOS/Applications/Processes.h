#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// This user's processes, by number.
std::vector<int> userProcesses();
/// No value once it is gone, or its file is.
std::optional<std::filesystem::path> programOfProcess(int process);
bool isProcessAlive(int process);
/// The environment a process was started with; no value where the system keeps it to itself.
std::optional<std::map<std::string, std::string>> environmentOfProcess(int process);
/// Starts `words` in a session of its own, its output appended to `log`. The process's number.
/// Throws FileError.
int startDetached(const std::vector<std::string>& words,
                  const std::map<std::string, std::string>& environment,
                  const std::filesystem::path& log);

} // namespace tavrin
