#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tavrin {

enum class LogLevel { debug, info, error };

/// Where log lines go: the platform's system log, or a test's list.
class LogSink {
public:
  virtual ~LogSink() = default;
  virtual void write(LogLevel level, std::string_view subsystem, std::string_view category,
                     std::string_view message) = 0;
};

/// One category of the system log under the subsystem "dev.quellby.tavrin".
class Log {
public:
  static constexpr std::string_view subsystem = "dev.quellby.tavrin";

  Log(LogSink& sink, std::string category) : sink_(&sink), category_(std::move(category)) {}

  void debug(std::string_view message) const { write(LogLevel::debug, message); }
  void info(std::string_view message) const { write(LogLevel::info, message); }
  void error(std::string_view message) const { write(LogLevel::error, message); }

private:
  void write(LogLevel level, std::string_view message) const {
    sink_->write(level, subsystem, category_, message);
  }

  LogSink* sink_;
  std::string category_;
};

} // namespace tavrin
