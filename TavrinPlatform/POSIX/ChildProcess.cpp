#include "TavrinPlatform/POSIX/ChildProcess.h"

#include "TavrinPlatform/POSIX/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <poll.h>
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

bool isReadable(const Descriptor& descriptor, std::chrono::steady_clock::time_point deadline) {
  for (;;) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0)
      return false;
    pollfd wanted{descriptor.number(), POLLIN, 0};
    const int count = ::poll(&wanted, 1, static_cast<int>(left.count()));
    if (count >= 0 || errno != EINTR)
      return count > 0;
  }
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

std::optional<std::string> outputOf(const std::vector<std::string>& words,
                                    std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  Pipe output = Pipe::make();
  const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
  const pid_t child = output.reading && !words.empty()
                          ? spawn({.program = words.front(),
                                   .arguments = {words.begin() + 1, words.end()},
                                   .input = nothing.number(),
                                   .output = output.writing.number(),
                                   .errors = nothing.number()})
                          : -1;
  if (child < 0)
    return std::nullopt;
  output.writing.close();
  std::string text;
  std::array<char, 4096> bytes;
  const Descriptor end = exitOf(child);
  bool isInTime = end && isReadable(output.reading, deadline);
  for (ssize_t count = 1; isInTime && count > 0;
       isInTime = isReadable(count > 0 ? output.reading : end, deadline)) {
    count = ::read(output.reading.number(), bytes.data(), bytes.size());
    text.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
  if (!isInTime)
    ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return isInTime && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? std::optional(text)
                                                                   : std::nullopt;
}

} // namespace tavrin
