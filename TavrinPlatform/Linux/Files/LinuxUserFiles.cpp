#include "TavrinPlatform/Linux/Files/LinuxUserFiles.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Files/FileBeginning.h"
#include "TavrinPlatform/Linux/Files/Trash.h"
#include "TavrinPlatform/Linux/Files/UserFolders.h"
#include "TavrinPlatform/POSIX/ChildProcess.h"

namespace tavrin {

namespace {

const BusAddress fileManager{"org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                             "org.freedesktop.FileManager1"};

/// Kept in a database that only its own tool reads.
std::optional<std::string> gnomeScreenshotFolder() {
  constexpr std::chrono::seconds limit{2};
  const auto output =
      outputOf({"gsettings", "get", "org.gnome.gnome-screenshot", "auto-save-directory"}, limit);
  const auto answer = trimmed(output ? *output : std::string_view());
  if (answer.size() < 3 || !answer.starts_with('\'') || !answer.ends_with('\''))
    return std::nullopt;
  return std::string(answer.substr(1, answer.size() - 2));
}

} // namespace

std::optional<std::string> LinuxUserFiles::configurationText(const char* name) const {
  constexpr std::size_t longest = 256 * 1024;
  try {
    return readBeginning(files_.configurationFolder() / name, longest);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

std::filesystem::path LinuxUserFiles::userFolder(const char* key, const char* underHome) const {
  const auto home = homeFolder();
  const auto settings = configurationText("user-dirs.dirs");
  const auto folder = settings ? userFolderIn(*settings, key, home) : std::nullopt;
  // The home itself stands for none.
  return folder && *folder != home && *folder != home / "" ? *folder : home / underHome;
}

std::filesystem::path LinuxUserFiles::downloadsFolder() const {
  return userFolder("XDG_DOWNLOAD_DIR", "Downloads");
}

std::optional<std::string> LinuxUserFiles::chosenScreenshotFolder() const {
  const std::string desktop = files_.environment("XDG_CURRENT_DESKTOP").value_or("");
  const auto isDesktop = [&](const char* name) { return desktop.find(name) != std::string::npos; };
  const auto setting = [&](const char* file, const char* group, const char* key) {
    const auto text = configurationText(file);
    return text ? settingIn(*text, group, key, homeFolder()) : std::nullopt;
  };
  if (isDesktop("KDE")) {
    const auto chosen = setting("spectaclerc", "ImageSave", "imageSaveLocation");
    return chosen ? chosen : setting("spectaclerc", "Save", "defaultSaveLocation");
  }
  if (isDesktop("XFCE"))
    return setting("xfce4/xfce4-screenshooter", "", "screenshot_dir");
  if (isDesktop("GNOME") || isDesktop("Cinnamon") || isDesktop("MATE"))
    return gnomeScreenshotFolder();
  return std::nullopt;
}

std::filesystem::path LinuxUserFiles::screenshotFolder() const {
  const auto chosen = chosenScreenshotFolder();
  if (const auto folder = chosen ? pathOfText(*chosen, homeFolder()) : std::nullopt)
    return *folder;
  const auto pictures = userFolder("XDG_PICTURES_DIR", "Pictures");
  const auto own = pictures / "Screenshots";
  std::error_code ignored;
  const bool hasPicturesOnly = !std::filesystem::is_directory(own, ignored) &&
                               std::filesystem::is_directory(pictures, ignored);
  return hasPicturesOnly ? pictures : own;
}

bool LinuxUserFiles::moveToTrash(const std::filesystem::path& file) {
  try {
    return tavrin::moveToTrash(file, files_.applicationSupportFolder() / "Trash");
  } catch (const FileError&) {
    return false;
  }
}

bool LinuxUserFiles::restoreFromTrash(const std::filesystem::path& file) {
  try {
    return tavrin::restoreFromTrash(file, files_.applicationSupportFolder() / "Trash");
  } catch (const FileError&) {
    return false;
  }
}

void LinuxUserFiles::open(const std::filesystem::path& file) {
  workspace_().open(fileURL(file.native()));
}

void LinuxUserFiles::reveal(const std::filesystem::path& file) {
  const auto folder = file.parent_path();
  if (session_ == nullptr || !session_->isOpen()) {
    open(folder);
    return;
  }
  BusMessage message = session_->method(fileManager, "ShowItems");
  sd_bus_message_open_container(message.get(), 'a', "s");
  message.append("s", fileURL(file.native()).c_str());
  sd_bus_message_close_container(message.get());
  message.append("s", "");
  session_->call(message, [this, folder](sd_bus_message* reply, const std::string&) {
    if (reply == nullptr)
      open(folder);
  });
}

} // namespace tavrin
