#include "TavrinHost/HostContext.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinStorage/StoragePath.h"

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

std::string folderIdentifier(HostContext& context, std::string_view role) {
  auto& platform = context.platform();
  std::error_code error;
  const auto folder = std::filesystem::weakly_canonical(
      StoragePath(platform.fileManager(), platform.mainBundle()).resolvedDirectory(), error);
  return fmt::format("{}.D{:016x}", role, std::hash<std::string>()(folder.string()));
}

} // namespace tavrin
