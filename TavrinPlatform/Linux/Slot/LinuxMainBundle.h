#pragma once

#include "TavrinPlatform/MainBundle.h"
#include "TavrinPlatform/POSIX/PropertyListFile.h"

namespace tavrin {

/// `X.app/Contents/{Info.plist,MacOS/program}`, found from the path this process was started by.
/// The programs of all bundles may be hard links of one file: only the path tells them apart.
class LinuxMainBundle final : public MainBundle {
public:
  explicit LinuxMainBundle(const std::filesystem::path& executable);

  /// The path handed to execve, with symbolic links resolved.
  static std::filesystem::path executablePath(const char* argumentZero);

  std::optional<std::filesystem::path> path() const override { return path_; }
  std::optional<std::string> identifier() const override { return string("CFBundleIdentifier"); }
  std::optional<std::string> string(const std::string& key) const override;
  std::optional<long> integer(const std::string& key) const override;

private:
  std::optional<std::filesystem::path> path_;
  std::optional<PropertyListFile> information_;
};

} // namespace tavrin
