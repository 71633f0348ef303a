#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

struct ProcessRequest {
  /// PATH for a tool that is given an environment of its own.
  static constexpr const char* systemPath = "/usr/bin:/bin:/usr/sbin:/sbin";

  std::string program;
  std::vector<std::string> arguments;
  std::string standardInput;
  /// Added to this process's environment, or all there is where that is not inherited.
  std::map<std::string, std::string> environment;
  bool inheritsEnvironment = true;
  double timeLimit = 30;
  /// Each pipe's bound; what comes after it is read and dropped.
  std::size_t outputLimit = 4 * 1024 * 1024;
  /// Empty is this process's own.
  std::string workingFolder = {};
  /// Told what either pipe has brought, beyond the bound too, on the main thread as it comes.
  std::function<void(std::string_view bytes)> onOutput = {};
};

struct ProcessResult {
  enum class Outcome { exited, signalled, timedOut, failedToStart };
  Outcome outcome = Outcome::failedToStart;
  /// Exit status, or the signal's number.
  int status = -1;
  std::string standardOutput;
  std::string standardError;
  bool wasTruncated = false;
};

/// Child processes with a time limit. Nothing waits on the main thread.
class ProcessRunner {
public:
  virtual ~ProcessRunner() = default;
  /// Calls `done` on the main thread once the child is gone, unless the token goes first; then
  /// the child is ended.
  [[nodiscard]] virtual TokenPtr run(ProcessRequest request,
                                     std::function<void(const ProcessResult&)> done) = 0;
};

} // namespace tavrin
