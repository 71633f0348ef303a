#include "TavrinPlatform/Linux/Tile/DockPreferencesWatch.h"

#include "TavrinPlatform/Linux/Tile/LinuxDockGeometry.h"

namespace tavrin {

DockPreferencesWatch::DockPreferencesWatch(const std::filesystem::path& home,
                                           std::function<void()> changed)
    : home_(home), file_(dockPreferencesFile(home)), changed_(std::move(changed)), stamp_(stamp()) {
  QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, [this] { look(); });
  QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, [this] { look(); });
  follow();
}

std::pair<std::filesystem::file_time_type, std::uintmax_t> DockPreferencesWatch::stamp() const {
  std::error_code error;
  const auto time = std::filesystem::last_write_time(file_, error);
  if (error)
    return {};
  return {time, std::filesystem::file_size(file_, error)};
}

/// The file, whose contents may change; its folder, in which another takes its place; and while
/// there is none, the last folder on the way to it that there is.
void DockPreferencesWatch::follow() {
  const auto add = [this](const std::filesystem::path& path) {
    const auto name = QString::fromStdString(path.string());
    if (!watcher_.files().contains(name) && !watcher_.directories().contains(name))
      watcher_.addPath(name);
  };
  std::error_code error;
  const auto lastFolder = [&] {
    std::filesystem::path folder = file_.parent_path();
    while (folder != home_ && !std::filesystem::exists(folder, error))
      folder = folder.parent_path();
    return folder;
  };
  std::filesystem::path folder;
  // The next one may have come before this one was watched.
  while (folder != lastFolder()) {
    folder = lastFolder();
    add(folder);
  }
  if (std::filesystem::exists(file_, error))
    add(file_);
  for (const QString& watched : watcher_.directories())
    if (watched != QString::fromStdString(folder.string()))
      watcher_.removePath(watched);
}

void DockPreferencesWatch::look() {
  follow();
  const auto now = stamp();
  if (std::exchange(stamp_, now) != now)
    changed_();
}

} // namespace tavrin
