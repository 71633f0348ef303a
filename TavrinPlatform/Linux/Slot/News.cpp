#include "TavrinPlatform/Linux/Slot/News.h"

#include "TavrinPlatform/Files/DocumentLock.h"

#include <fstream>
#include <iterator>

namespace tavrin {

bool isNews(const std::filesystem::path& file, const std::string& text) {
  std::error_code error;
  std::filesystem::create_directories(file.parent_path(), error);
  const DocumentLock lock(file);
  std::ifstream old(file);
  if (std::string(std::istreambuf_iterator<char>(old), {}) == text)
    return false;
  std::ofstream(file) << text;
  std::ifstream written(file);
  return std::string(std::istreambuf_iterator<char>(written), {}) == text;
}

} // namespace tavrin
