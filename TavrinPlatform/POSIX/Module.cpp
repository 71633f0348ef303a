#include "TavrinPlatform/POSIX/Module.h"

#include "TavrinPlatform/POSIX/ProgramPath.h"

#include "TavrinPlatform/FileManager.h"

#include <dlfcn.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const FileManager& files, const MainBundle& bundle) {
  if (const auto wish = files.environment("TAVRIN_MODULE_DIR"); wish && !wish->empty())
    return *wish;
  if (const auto path = bundle.path())
    return path->parent_path() / "modules";
  return programPath().parent_path() / "modules";
}

} // namespace

ModuleFolder::ModuleFolder(const FileManager& files, const MainBundle& bundle)
    : folder_(folderOf(files, bundle)) {}

void* ModuleFolder::address(const std::string& name, const char* symbol, std::string& error) const {
  const fs::path file = folder_ / ("libtavrin-" + name + ".so");
  void* module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  void* function = module != nullptr ? ::dlsym(module, symbol) : nullptr;
  if (function == nullptr) {
    const char* reason = ::dlerror();
    error = reason != nullptr ? reason : "it is not there";
  }
  return function;
}

} // namespace tavrin
