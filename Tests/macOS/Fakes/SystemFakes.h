#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#include <functional>
#include <sys/proc_info.h>

/// Below the frameworks: queues, changes in folders, processes. The fakes have one thread, so that
/// a test says when a queue's turn is.
struct SystemState {
  /// What waits in the queues, in the order it was given.
  std::vector<std::pair<void*, std::function<void()>>> waiting;
  int queues = 0;
  int streams = 0;
  /// What no program may do with a stream.
  std::vector<std::string> misuses;
  bool canStream = true;
  bool canStart = true;
  /// Processes of this user: what was started, and the status, by number.
  struct Process {
    std::string program;
    unsigned status = 2;
    /// As the system gives arguments and environment.
    std::string memory = {};
  };
  std::map<int, Process> processes;
};
extern SystemState kernel;

/// The turn of all that waits in queues.
void runQueues();
/// A change in a watched folder, which is told when the queues have their turn.
void changeFile(const std::string& path, unsigned flags = 0);
