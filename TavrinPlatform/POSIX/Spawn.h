#pragma once

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavrin {

struct SpawnRequest {
  /// A path, or a name to be looked for as a shell does.
  std::string program;
  std::vector<std::string> arguments = {};
  /// All of the environment, "NAME=value"; none for this process's own.
  std::optional<std::vector<std::string>> environment = {};
  /// The child's standard descriptors; it gets no others.
  int input = -1;
  int output = -1;
  int errors = -1;
  /// Where the child starts; empty is this process's own folder.
  std::string workingFolder = {};
  /// Whether the child leads a process group of its own.
  bool leadsGroup = false;
  /// Whether the child leads a session of its own, and so a group too.
  bool leadsSession = false;
};

/// Starts a program with the signals' usual dispositions. Gives its number; where it did not
/// start, minus the system's error.
pid_t spawn(const SpawnRequest& request);

/// Starts a program that is to outlive this one: in a process group of its own, nobody's child, and
/// without this one's standard descriptors. Takes a few milliseconds. False where there is no such
/// program.
bool spawnDetached(const std::vector<std::string>& words);

/// This process's environment with `additions`, which win.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& additions);

/// A list as the system takes it: pointers into `words`, then null.
std::vector<char*> pointers(std::vector<std::string>& words);

} // namespace tavrin
