#include "TavrinStorage/StoragePath.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <system_error>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

fs::path expandingTilde(const std::string& path, const FileManager& fileManager) {
  if (path != "~" && !path.starts_with("~/"))
    return path;
  return fileManager.homeFolder() / path.substr(std::min<std::size_t>(2, path.size()));
}

} // namespace

fs::path StoragePath::resolvedDirectory() const {
  const auto applicationSupport = fileManager_->applicationSupportFolder();
  const auto override = fileManager_->environment(directoryOverrideVariable);
  if (override && !trimmed(*override).empty())
    return expandingTilde(*override, *fileManager_);
  return applicationSupport / folderName();
}

std::string StoragePath::folderName() const {
  std::string name(trimmed(bundle_->string(folderNameInfoKey).value_or("")));
  std::erase(name, '/');
  return name.empty() ? std::string(defaultFolderName) : name;
}

fs::path StoragePath::appSupportDirectory(bool create) const {
  const auto directory = resolvedDirectory();
  if (!create)
    return directory;
  std::error_code error;
  const bool isNew = fs::create_directories(directory, error);
  if (!error && isNew)
    fs::permissions(directory, fs::perms::owner_all, error);
  if (!error && !fs::is_directory(directory, error) && !error)
    error = std::make_error_code(std::errc::not_a_directory);
  if (error)
    throw FileError(
        failure(translated("create the folder {folder}", {{"folder", directory.string()}}),
                error.message()));
  return directory;
}

} // namespace tavrin
