#include "TavrinHost/HostContext.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/Texts.h"

#include <fmt/format.h>

namespace tavrin {

void HostContext::remarkOnce(const std::string& line) {
  if (remarks_.insert(line).second)
    remark(line);
}

std::filesystem::path HostContext::stateFolder() {
  auto& files = platform_.fileManager();
  const auto chosen = files.environment("XDG_STATE_HOME");
  const bool isChosen = chosen && chosen->starts_with('/');
  const auto folder =
      (isChosen ? std::filesystem::path(*chosen) : files.homeFolder() / ".local/state") / "tavrin";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw FileError(
        failure(translated("make the folder \"{folder}\"", {{"folder", folder.string()}}),
                error.message()));
  return folder;
}

} // namespace tavrin
