#include "TavrinPlatform/POSIX/ChildProcess.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#ifdef __linux__
#include <sys/mman.h>
#include <sys/syscall.h>
#endif

namespace tavrin {
namespace {

bool fill(const Descriptor& file, std::string_view bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto count =
        ::pwrite(file.number(), bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

Descriptor emptyFile() {
  return Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

} // namespace

Descriptor exitByThread(pid_t process) {
  auto pipe = std::make_unique<Pipe>(Pipe::make());
  if (!pipe->reading)
    return {};
  Descriptor reading = std::move(pipe->reading);
  try {
    // The pipe's other end goes with the thread's function.
    std::thread([process, pipe = std::move(pipe)] {
      siginfo_t info{};
      while (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT) != 0 &&
             errno == EINTR) {
      }
    }).detach();
  } catch (const std::system_error&) {
    return {};
  }
  return reading;
}

Descriptor exitOf(pid_t process) {
#ifdef __linux__
  return Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
#else
  return exitByThread(process);
#endif
}

Descriptor temporaryFileOf(std::string_view bytes) {
  if (bytes.empty())
    return emptyFile();
  const char* folder = std::getenv("TMPDIR");
  std::string path = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp");
  path += "/tavrin-input-XXXXXX";
  Descriptor file(::mkstemp(path.data()));
  if (!file)
    return {};
  ::unlink(path.c_str());
  ::fcntl(file.number(), F_SETFD, FD_CLOEXEC);
  return fill(file, bytes) ? std::move(file) : Descriptor();
}

Descriptor fileOf(std::string_view bytes) {
#ifdef __linux__
  if (bytes.empty())
    return emptyFile();
  Descriptor file(::memfd_create("input", MFD_CLOEXEC));
  return file && fill(file, bytes) ? std::move(file) : Descriptor();
#else
  return temporaryFileOf(bytes);
#endif
}

} // namespace tavrin
