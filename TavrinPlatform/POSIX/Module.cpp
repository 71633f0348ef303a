#include "TavrinPlatform/POSIX/Module.h"

#include "TavrinPlatform/FileManager.h"

namespace tavrin {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const FileManager& files, const MainBundle& bundle) {
  if (const auto wish = files.environment("TAVRIN_MODULE_DIR"); wish && !wish->empty())
    return *wish;
  if (const auto path = bundle.path())
    return path->parent_path() / "modules";
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path() / "modules";
}

} // namespace

ModuleFolder::ModuleFolder(const FileManager& files, const MainBundle& bundle)
    : folder_(folderOf(files, bundle)) {}

} // namespace tavrin
