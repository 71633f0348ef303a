#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/UserFiles.h"
#include "TavrinPlatform/Workspace.h"

namespace tavrin {

/// The folders of xdg-user-dirs and of the desktop's screenshot program, the trash of its home, and
/// the file manager on the session bus.
class LinuxUserFiles final : public UserFiles {
public:
  /// `session` may be null; `workspace` is asked for when something is to be opened.
  LinuxUserFiles(const LinuxFileManager& files, Bus* session, std::function<Workspace&()> workspace)
      : files_(files), session_(session), workspace_(std::move(workspace)) {}

  std::filesystem::path homeFolder() const override { return files_.homeFolder(); }
  std::filesystem::path downloadsFolder() const override;
  std::filesystem::path screenshotFolder() const override;
  bool moveToTrash(const std::filesystem::path& file) override;
  bool restoreFromTrash(const std::filesystem::path& file) override;
  void open(const std::filesystem::path& file) override;
  void reveal(const std::filesystem::path& file) override;

private:
  /// As "user-dirs.dirs" has it, else the folder of that name in the home.
  std::filesystem::path userFolder(const char* key, const char* underHome) const;
  std::optional<std::string> configurationText(const char* name) const;
  std::optional<std::string> chosenScreenshotFolder() const;

  const LinuxFileManager& files_;
  Bus* session_;
  std::function<Workspace&()> workspace_;
};

} // namespace tavrin
