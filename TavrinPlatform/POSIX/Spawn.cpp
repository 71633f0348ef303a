#include "TavrinPlatform/POSIX/Spawn.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __APPLE__
#include <crt_externs.h>
#endif

namespace tavrin {
namespace {

#ifdef __APPLE__
/// A library there has no `environ` of its own.
char** processEnvironment() {
  return *::_NSGetEnviron();
}
constexpr int closesOthers = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
char** processEnvironment() {
  return environ;
}
constexpr int closesOthers = 0;
#endif

class FileActions {
public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  void place(int descriptor, int number) {
    if (descriptor < 0)
      return;
    posix_spawn_file_actions_adddup2(&actions_, descriptor, number);
    isPlaced_[static_cast<std::size_t>(number)] = true;
  }
  void enter(const std::string& folder) {
    if (!folder.empty())
      posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
  }
  /// Libraries open files that a child would inherit.
  void closeOthers() {
#ifdef __APPLE__
    // The attributes close all but what an action names: these are to stay as they are.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      if (!isPlaced_[static_cast<std::size_t>(number)])
        posix_spawn_file_actions_addinherit_np(&actions_, number);
#else
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
#endif
  }
  const posix_spawn_file_actions_t* get() const {
    return &actions_;
  }

private:
  posix_spawn_file_actions_t actions_;
  std::array<bool, 3> isPlaced_{};
};

class Attributes {
public:
  explicit Attributes(const SpawnRequest& request) {
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t changed;
    sigemptyset(&none);
    sigemptyset(&changed);
    for (const int number : {SIGPIPE, SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD})
      sigaddset(&changed, number);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &changed);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_,
                             static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                closesOthers |
                                                (request.leadsSession ? POSIX_SPAWN_SETSID
                                                 : request.leadsGroup ? POSIX_SPAWN_SETPGROUP
                                                                      : 0)));
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  const posix_spawnattr_t* get() const { return &attributes_; }

private:
  posix_spawnattr_t attributes_;
};

} // namespace

pid_t spawn(const SpawnRequest& request) {
  FileActions actions;
  actions.place(request.input, STDIN_FILENO);
  actions.place(request.output, STDOUT_FILENO);
  actions.place(request.errors, STDERR_FILENO);
  actions.enter(request.workingFolder);
  actions.closeOthers();
  const Attributes attributes(request);
  std::vector<std::string> words = {request.program};
  words.insert(words.end(), request.arguments.begin(), request.arguments.end());
  auto variables = request.environment.value_or(std::vector<std::string>());
  pid_t child = 0;
  const int error = posix_spawnp(
      &child, request.program.c_str(), actions.get(), attributes.get(), pointers(words).data(),
      request.environment ? pointers(variables).data() : processEnvironment());
  return error == 0 ? child : -error;
}

bool spawnDetached(const std::vector<std::string>& words) {
  if (words.empty())
    return false;
  // The shell ends at once, and what it has put behind it is the first process's to bury.
  SpawnRequest request{.program = "/bin/sh",
                       .arguments = {"-c",
                                     R"(command -v "$1" >/dev/null || exit 1
                       "$@" </dev/null >/dev/null 2>&1 &)",
                                     "sh"},
                       .leadsGroup = true};
  request.arguments.insert(request.arguments.end(), words.begin(), words.end());
  const pid_t shell = spawn(request);
  int status = 0;
  while (shell > 0 && ::waitpid(shell, &status, 0) < 0 && errno == EINTR) {
  }
  return shell > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> list;
  for (auto& word : words)
    list.push_back(word.data());
  list.push_back(nullptr);
  return list;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& additions) {
  std::vector<std::string> variables;
  for (char** line = processEnvironment(); *line != nullptr; ++line) {
    const std::string_view text(*line);
    if (!additions.contains(std::string(text.substr(0, text.find('=')))))
      variables.emplace_back(text);
  }
  for (const auto& [name, value] : additions)
    variables.push_back(name + "=" + value);
  return variables;
}

} // namespace tavrin
