#include "TavrinCore/Dock/DockError.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(DockError, Sentences) {
  const std::filesystem::path file = "/p/com.apple.dock.plist";
  const std::pair<DockError, const char*> cases[] = {
      {DockError::plistNotFound(file), "Failed to locate dock plist at /p/com.apple.dock.plist"},
      {DockError::plistReadFailed(file, "x"),
       "Failed to read dock plist at /p/com.apple.dock.plist because x"},
      {DockError::plistMalformed(file, "root is not a dictionary"),
       "Failed to decode dock plist at /p/com.apple.dock.plist because root is not a dictionary"},
      {DockError::plistWriteFailed(file, "x"),
       "Failed to write dock plist at /p/com.apple.dock.plist because x"},
      {DockError::unsupportedItemType("recents-tile"),
       "Failed to handle dock item of type recents-tile because it is not supported"},
      {DockError::dockReloadFailed("x"), "Failed to reload dock because x"},
      {DockError::fileNotFound("/a"), "Failed to find file at /a"},
      {DockError::profileNotFound("id"), "Failed to find profile with id id"},
      {DockError::noBackupAvailable(), "Cannot undo because there is no Dock backup yet"}};
  for (const auto& [error, sentence] : cases)
    EXPECT_EQ(std::string(error.what()), sentence);
  EXPECT_NE(DockError::profileNotFound("a"), DockError::profileNotFound("b"));
}

} // namespace
} // namespace tavrin
