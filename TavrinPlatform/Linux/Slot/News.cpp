#include "TavrinPlatform/Linux/Slot/News.h"

#include "TavrinPlatform/Files/DocumentLock.h"
#include "TavrinPlatform/Files/FileBeginning.h"

#include <fstream>

namespace tavrin {

bool isNews(const std::filesystem::path& file, const std::string& text) {
  std::error_code error;
  std::filesystem::create_directories(file.parent_path(), error);
  const DocumentLock lock(file);
  const auto isThere = [&] { return readBeginning(file, text.size() + 1) == text; };
  if (isThere())
    return false;
  std::ofstream(file) << text;
  return isThere();
}

} // namespace tavrin
