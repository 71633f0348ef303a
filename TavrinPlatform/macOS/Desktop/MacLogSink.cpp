#include "TavrinPlatform/macOS/Desktop/MacLogSink.h"

#include "TavrinCore/Text/Text.h"

#include <string>

namespace tavrin {
namespace {

os_log_type_t typeOf(LogLevel level) {
  switch (level) {
  case LogLevel::debug:
    return OS_LOG_TYPE_DEBUG;
  case LogLevel::info:
    return OS_LOG_TYPE_INFO;
  case LogLevel::error:
    break;
  }
  return OS_LOG_TYPE_ERROR;
}

} // namespace

os_log_t MacLogSink::logFor(std::string_view subsystem, std::string_view category) {
  const std::lock_guard lock(mutex_);
  auto& log = logs_[{std::string(subsystem), std::string(category)}];
  if (log == nullptr)
    log = os_log_create(std::string(subsystem).c_str(), std::string(category).c_str());
  return log;
}

void MacLogSink::write(LogLevel level, std::string_view subsystem, std::string_view category,
                       std::string_view message) {
  const os_log_t log = logFor(subsystem, category);
  do {
    const std::string piece(beginning(message, longestPiece));
    // Bytes that are no text must not hold the loop up.
    message.remove_prefix(piece.empty() ? message.size() : piece.size());
    os_log_with_type(log, typeOf(level), "%{public}s", piece.c_str());
  } while (!message.empty());
}

} // namespace tavrin
