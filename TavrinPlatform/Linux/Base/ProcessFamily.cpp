#include "TavrinPlatform/Linux/Base/ProcessFamily.h"

#include <QLibraryInfo>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::string_view familyArgument = "--family";

/// The window system's plugin and what it links, fontconfig among it.
void loadWindowSystem() {
  if (std::getenv("DISPLAY") == nullptr)
    return;
  const auto plugin =
      QLibraryInfo::path(QLibraryInfo::PluginsPath) + QLatin1String("/platforms/libqxcb.so");
  if (dlopen(plugin.toLocal8Bit().constData(), RTLD_NOW | RTLD_GLOBAL) == nullptr)
    return;
  // Reading the font configuration takes longer, and more memory, than all the rest.
  if (auto* readFonts = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "FcInit")))
    readFonts();
}

void redirectOutput(const char* log) {
  const int file = open(log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (file < 0)
    return;
  dup2(file, STDOUT_FILENO);
  dup2(file, STDERR_FILENO);
  close(file);
}

/// Makes the list of processes show `program` for this one: the kernel reads the arguments from
/// where it put them. `room` is their length altogether.
void showArguments(char* arguments, std::size_t room, std::string_view program) {
  if (program.size() + 1 > room)
    return;
  std::memset(arguments, 0, room);
  std::memcpy(arguments, program.data(), program.size());
}

/// What `main` gets in a child. Lives as long as the process: the toolkit keeps a reference.
struct Arguments {
  std::string program;
  std::string background = "--background";
  std::array<char*, 3> pointers{};
};

} // namespace

bool joinFamily(int& argc, char**& argv, const std::function<void()>& prepare) {
  constexpr int firstMember = 3;
  if (argc <= firstMember || argv[1] != familyArgument)
    return true;
  const int report = std::atoi(argv[2]);
  loadWindowSystem();
  prepare();
  for (int i = firstMember; i + 1 < argc; i += 2) {
    const pid_t process = fork();
    if (process != 0) {
      const int told = std::max(process, 0);
      [[maybe_unused]] const auto written = write(report, &told, sizeof told);
      continue;
    }
    close(report);
    setsid();
    redirectOutput(argv[i + 1]);
    static Arguments arguments;
    arguments.program = argv[i];
    const char* last = argv[argc - 1];
    showArguments(argv[0], static_cast<std::size_t>(last + std::strlen(last) + 1 - argv[0]),
                  arguments.program);
    arguments.pointers = {arguments.program.data(), arguments.background.data(), nullptr};
    argc = 2;
    argv = arguments.pointers.data();
    return true;
  }
  return false;
}

} // namespace tavrin
