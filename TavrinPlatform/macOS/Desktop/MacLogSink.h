#pragma once

#include "TavrinCore/Base/Log.h"

#include <map>
#include <mutex>
#include <os/log.h>

namespace tavrin {

/// The system's log. From any thread.
class MacLogSink final : public LogSink {
public:
  /// A message beyond the bytes that the system keeps is written in pieces.
  static constexpr std::size_t longestPiece = 800;

  void write(LogLevel level, std::string_view subsystem, std::string_view category,
             std::string_view message) override;

private:
  os_log_t logFor(std::string_view subsystem, std::string_view category);

  std::mutex mutex_;
  /// Never given back: the system keeps one object for a subsystem and category anyhow.
  std::map<std::pair<std::string, std::string>, os_log_t> logs_;
};

} // namespace tavrin
