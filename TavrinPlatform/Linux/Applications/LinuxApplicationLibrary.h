#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/Linux/Applications/ApplicationLauncher.h"
#include "TavrinPlatform/Linux/Applications/IconLoader.h"
#include "TavrinPlatform/Linux/Base/DesktopXSettings.h"
#include "TavrinPlatform/POSIX/HandlerList.h"

class QFileSystemWatcher;

namespace tavrin {

/// Desktop entries, the icon theme that the desktop has chosen, and starting what is chosen.
class LinuxApplicationLibrary final : public ApplicationLibrary {
public:
  /// `session` may be null. All outlive this.
  LinuxApplicationLibrary(const FileManager& files, RunLoop& runLoop, Bus* session,
                          ModuleFolder modules);
  ~LinuxApplicationLibrary() override;

  [[nodiscard]] TokenPtr list(std::function<void(std::vector<ApplicationInfo>)> answer) override;
  [[nodiscard]] TokenPtr
  find(std::vector<AppEntry> entries,
       std::function<void(std::vector<std::optional<ApplicationInfo>>)> answer) override;
  [[nodiscard]] TokenPtr icon(const std::string& icon, int points, int scale,
                              std::function<void(QImage)> answer) override;
  [[nodiscard]] TokenPtr launch(const std::string& id, const std::string& action,
                                std::function<void(const std::string& trouble)> answer) override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;

private:
  /// Does `work` on the queue, then `answer` with what it gave.
  template <class Value>
  TokenPtr ask(std::function<Value()> work, std::function<void(Value)> answer);
  void watchFolders();
  void watchTheme();
  void askTheme();
  /// Takes the desktop's choice; `portalTheme` counts where it says nothing to X programs.
  void setTheme(const std::string& portalTheme);
  void changed();

  const FileManager& files_;
  RunLoop& runLoop_;
  Bus* session_;
  ApplicationLauncher launcher_;
  HandlerList changes_;
  std::unique_ptr<QFileSystemWatcher> watcher_;
  TokenPtr themeWatch_;
  TokenPtr settling_;
  std::unique_ptr<DesktopXSettings> xsettings_;
  std::string portalTheme_;
  std::string theme_;
  bool isThemeKnown_ = false;
  /// What waits for the theme's name.
  std::vector<std::function<void()>> waiting_;
  std::shared_ptr<IconLoader> icons_;
  Lifetime alive_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
