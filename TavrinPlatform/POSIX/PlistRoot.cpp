#include "TavrinPlatform/Files/PlistRoot.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"

namespace tavrin {

namespace fs = std::filesystem;

std::optional<PropertyList::Dictionary> readPlistRoot(const fs::path& file) {
  std::optional<std::string> bytes;
  try {
    bytes = readFile(file, PropertyList::maximumSize);
  } catch (const FileError& error) {
    throw DockError::plistReadFailed(file, error.reason());
  }
  if (!bytes)
    return std::nullopt;
  try {
    PropertyList root = PropertyList::parse(*bytes);
    if (auto* entries = root.dictionary())
      return std::move(*entries);
  } catch (const PropertyListError& error) {
    throw DockError::plistMalformed(file, error.what());
  }
  throw DockError::plistMalformed(file, translated("root is not a dictionary"));
}

void writePlistRoot(const fs::path& file, PropertyList::Dictionary root) {
  try {
    writeFileAtomically(file, PropertyList(std::move(root)).xml());
  } catch (const PropertyListError& error) {
    throw DockError::plistWriteFailed(file, error.what());
  } catch (const FileError& error) {
    throw DockError::plistWriteFailed(file, error.reason());
  }
}

} // namespace tavrin
