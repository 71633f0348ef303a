#pragma once

#include <QFileSystemWatcher>
#include <filesystem>
#include <functional>

namespace tavrin {

/// Tells when the file of the Dock's preferences has become another one, also where its folders
/// come later.
class DockPreferencesWatch {
public:
  DockPreferencesWatch(const std::filesystem::path& home, std::function<void()> changed);

private:
  void look();
  void follow();
  /// What tells one state of the file from the next.
  std::pair<std::filesystem::file_time_type, std::uintmax_t> stamp() const;

  const std::filesystem::path home_;
  const std::filesystem::path file_;
  const std::function<void()> changed_;
  std::pair<std::filesystem::file_time_type, std::uintmax_t> stamp_;
  QFileSystemWatcher watcher_;
};

} // namespace tavrin
