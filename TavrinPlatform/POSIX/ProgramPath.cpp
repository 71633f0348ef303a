#include "TavrinPlatform/POSIX/ProgramPath.h"

#include <string>
#include <system_error>
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

namespace tavrin {

std::filesystem::path programPath() {
  std::error_code error;
#ifdef __APPLE__
  std::uint32_t size = 0;
  ::_NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (size == 0 || ::_NSGetExecutablePath(path.data(), &size) != 0)
    return {};
  return std::filesystem::canonical(path.c_str(), error);
#else
  return std::filesystem::read_symlink("/proc/self/exe", error);
#endif
}

} // namespace tavrin
