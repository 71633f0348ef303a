#include "TavrinHost/HostContext.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"

#include <fmt/format.h>

namespace tavrin {

void HostContext::remarkOnce(const std::string& line) {
  if (remarks_.insert(line).second)
    remark(line);
}

std::filesystem::path HostContext::stateFolder() {
  const auto folder = platform_.fileManager().stateFolder() / "tavrin";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw FileError(
        failure(translated("make the folder \"{folder}\"", {{"folder", folder.string()}}),
                error.message()));
  return folder;
}

} // namespace tavrin
