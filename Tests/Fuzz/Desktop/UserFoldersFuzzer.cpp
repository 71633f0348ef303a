#include "TavrinPlatform/Linux/Files/UserFolders.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const char* key : {"XDG_DOWNLOAD_DIR", "XDG_PICTURES_DIR", ""})
    if (const auto folder = userFolderIn(text, key, "/home/u"); folder && !folder->is_absolute())
      std::abort();
  settingIn(text, "ImageSave", "imageSaveLocation", "/home/u");
  settingIn(text, "", "screenshot_dir", "/home/u");
  return 0;
}
