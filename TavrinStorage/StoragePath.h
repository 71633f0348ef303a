#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/MainBundle.h"

#include <filesystem>
#include <string_view>

namespace tavrin {

/// Where the data folder is, and its files. Every function throws FileError; the file functions
/// create the folder.
class StoragePath {
public:
  static constexpr const char* directoryOverrideVariable = "TAVRIN_APP_SUPPORT_DIR";
  static constexpr const char* folderNameInfoKey = "TavrinDataFolder";
  static constexpr std::string_view defaultFolderName = "Tavrin";
  static constexpr std::string_view legacyCollectionsFileName = "collections.json";

  StoragePath(const FileManager& fileManager, const MainBundle& bundle)
      : fileManager_(&fileManager), bundle_(&bundle) {}

  /// What `makePlatform` asks for.
  static std::filesystem::path directoryOf(const FileManager& files, const MainBundle& bundle) {
    return StoragePath(files, bundle).resolvedDirectory();
  }

  /// Does not touch the disk.
  std::filesystem::path resolvedDirectory() const;
  /// With `create`, makes the folder, for its owner alone, and what leads to it.
  std::filesystem::path appSupportDirectory(bool create) const;

  std::filesystem::path widgetsFileURL() const { return file("widgets.json"); }
  std::filesystem::path profilesFileURL() const { return file("profiles.json"); }
  std::filesystem::path followingFileURL() const { return file("following.json"); }
  std::filesystem::path coloursFileURL() const { return file("colours.json"); }
  std::filesystem::path emojiFileURL() const { return file("emoji.json"); }
  std::filesystem::path waterFileURL() const { return file("water.json"); }
  std::filesystem::path clipboardFileURL() const { return file("clipboard.json.enc"); }
  std::filesystem::path legacyCollectionsFileURL() const { return file(legacyCollectionsFileName); }

private:
  std::filesystem::path file(std::string_view name) const {
    return appSupportDirectory(true) / name;
  }
  std::string folderName() const;

  const FileManager* fileManager_;
  const MainBundle* bundle_;
};

} // namespace tavrin
