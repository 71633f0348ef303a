#include "TavrinPlatform/POSIX/Module.h"

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/POSIX/ProgramPath.h"

namespace tavrin {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const FileManager& files, const MainBundle& bundle) {
  if (const auto wish = files.environment("TAVRIN_MODULE_DIR"); wish && !wish->empty())
    return *wish;
  if (const auto path = bundle.path())
    return path->parent_path() / "modules";
  return modulesOfPrograms();
}

} // namespace

fs::path modulesOfPrograms() {
  const auto prefix = programPath().parent_path().parent_path();
  std::error_code error;
  const auto built = prefix / "bundles/modules";
  return fs::exists(built, error) ? built : prefix / "lib/tavrin/modules";
}

ModuleFolder::ModuleFolder(const FileManager& files, const MainBundle& bundle)
    : folder_(folderOf(files, bundle)) {}

} // namespace tavrin
