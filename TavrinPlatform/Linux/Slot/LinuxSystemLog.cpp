#include "TavrinPlatform/Linux/Slot/LinuxSystemLog.h"

#include "TavrinCore/Text/ForeignText.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/uio.h>
#include <syslog.h>
#include <unistd.h>

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

namespace tavrin {

namespace {

constexpr const char* journalSocket = "/run/systemd/journal/socket";

int priority(LogLevel level) {
  switch (level) {
  case LogLevel::debug:
    return LOG_DEBUG;
  case LogLevel::info:
    return LOG_INFO;
  case LogLevel::error:
    return LOG_ERR;
  }
  return LOG_INFO;
}

void writeToJournal(int level, std::string_view subsystem, std::string_view category,
                    std::string_view message) {
  std::array<std::string, 5> fields = {
      "PRIORITY=" + std::to_string(level), "SUBSYSTEM=" + std::string(subsystem),
      "CATEGORY=" + std::string(category), "SYSLOG_IDENTIFIER=tavrin",
      "MESSAGE=" + std::string(message)};
  std::array<iovec, fields.size()> parts{};
  for (std::size_t i = 0; i < fields.size(); ++i)
    parts[i] = {fields[i].data(), fields[i].size()};
  sd_journal_sendv(parts.data(), static_cast<int>(parts.size()));
}

} // namespace

LinuxSystemLog::LinuxSystemLog() {
  const char* wish = std::getenv("TAVRIN_LOG");
  echoes_ = isatty(STDERR_FILENO) != 0 || (wish != nullptr && std::string_view(wish) == "stderr");
}

void LinuxSystemLog::write(LogLevel level, std::string_view subsystem, std::string_view category,
                           std::string_view words) {
  // Names of files and sentences of other programs end up in messages: one line, on every terminal.
  const std::string message = printable(words);
  if (echoes_) {
    std::string line;
    line.append(subsystem).append(" ").append(category).append(": ").append(message).append("\n");
    std::fwrite(line.data(), 1, line.size(), stderr);
  }
  // Looked at anew each time: the journal may start after this process.
  if (access(journalSocket, W_OK) == 0)
    writeToJournal(priority(level), subsystem, category, message);
  else
    syslog(LOG_USER | priority(level), "%.*s %.*s: %.*s", static_cast<int>(subsystem.size()),
           subsystem.data(), static_cast<int>(category.size()), category.data(),
           static_cast<int>(message.size()), message.data());
}

} // namespace tavrin
