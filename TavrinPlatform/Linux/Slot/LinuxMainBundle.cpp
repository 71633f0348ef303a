#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"

#include <sys/auxv.h>

namespace tavrin {

namespace fs = std::filesystem;

fs::path LinuxMainBundle::executablePath(const char* argumentZero) {
  const auto* executed = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  // Slots are links to one file, and a slot may have been forked from another one: the first
  // argument tells which it is, as long as it names the program that runs.
  std::error_code differs;
  if (argumentZero != nullptr && fs::path(argumentZero).is_absolute() &&
      fs::equivalent(argumentZero, "/proc/self/exe", differs))
    return fs::canonical(argumentZero, differs);
  // Started through the dynamic loader by hand, the kernel's answer is the loader's path; then
  // the first argument is the better one.
  std::error_code error;
  for (const char* candidate : {executed, argumentZero}) {
    if (candidate == nullptr || *candidate == '\0')
      continue;
    if (fs::path(candidate).filename().string().starts_with("ld-linux"))
      continue;
    const auto path = fs::canonical(candidate, error);
    if (!error)
      return path;
  }
  return fs::read_symlink("/proc/self/exe", error);
}

LinuxMainBundle::LinuxMainBundle(const fs::path& executable) {
  const auto programs = executable.parent_path();
  const auto contents = programs.parent_path();
  const auto bundle = contents.parent_path();
  if (programs.filename() != "MacOS" || contents.filename() != "Contents" ||
      bundle.extension() != ".app")
    return;
  path_ = bundle;
  information_ = PropertyListFile::read(contents / "Info.plist");
}

std::optional<std::string> LinuxMainBundle::string(const std::string& key) const {
  return information_ ? information_->string(key) : std::nullopt;
}

std::optional<long> LinuxMainBundle::integer(const std::string& key) const {
  return information_ ? information_->integer(key) : std::nullopt;
}

} // namespace tavrin
