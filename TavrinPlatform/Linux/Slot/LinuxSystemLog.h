#pragma once

#include "TavrinCore/Base/Log.h"

namespace tavrin {

/// The journal, with SUBSYSTEM and CATEGORY as fields of their own; syslog where no journal
/// runs. Written to standard error as well when that is a terminal or TAVRIN_LOG is "stderr".
class LinuxSystemLog final : public LogSink {
public:
  LinuxSystemLog();
  void write(LogLevel level, std::string_view subsystem, std::string_view category,
             std::string_view message) override;

private:
  bool echoes_;
};

} // namespace tavrin
