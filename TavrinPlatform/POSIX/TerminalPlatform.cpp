#include "TavrinPlatform/POSIX/TerminalPlatform.h"

#include "TavrinPlatform/POSIX/ProgramPath.h"

#include <cerrno>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr int commandNotFound = 127;

/// Signals of the keyboard belong to the program in the foreground while it runs.
class KeyboardSignalsIgnored {
public:
  KeyboardSignalsIgnored()
      : interrupt_(std::signal(SIGINT, SIG_IGN)), quit_(std::signal(SIGQUIT, SIG_IGN)) {}
  ~KeyboardSignalsIgnored() { restore(); }
  KeyboardSignalsIgnored(const KeyboardSignalsIgnored&) = delete;
  KeyboardSignalsIgnored& operator=(const KeyboardSignalsIgnored&) = delete;
  void restore() const {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGQUIT, quit_);
  }

private:
  void (*interrupt_)(int);
  void (*quit_)(int);
};

} // namespace

std::filesystem::path TerminalPlatform::program() {
  return programPath();
}

bool TerminalPlatform::ownsTerminal() {
  return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

int TerminalPlatform::runInForeground(const std::vector<std::string>& words) {
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (auto& word : copies)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const KeyboardSignalsIgnored guard;
  const pid_t child = fork();
  if (child == 0) {
    guard.restore();
    execvp(arguments.front(), arguments.data());
    _exit(commandNotFound);
  }
  int status = 0;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return child > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : commandNotFound;
}

} // namespace tavrin
