#pragma once

#include "TavrinPlatform/Files/SharedLibrary.h"
#include "TavrinPlatform/MainBundle.h"

#include <filesystem>
#include <string>

namespace tavrin {

class FileManager;

/// Where the modules lie for a program outside a bundle: built, or installed beside "lib".
std::filesystem::path modulesOfPrograms();

/// Adapters that need large libraries are modules of their own, loaded when first asked for, so
/// that a process has the libraries of the services it uses and no others. They lie in the folder
/// "modules" beside the slots' bundles, or where TAVRIN_MODULE_DIR says. A loaded module stays.
class ModuleFolder {
public:
  ModuleFolder(const FileManager& files, const MainBundle& bundle);

  /// The function `symbol` of "libtavrin-NAME.so"; null, and `error` says why, where the module or
  /// a library it needs is missing. From any thread.
  template <class Function>
  Function* find(const std::string& name, const char* symbol, std::string& error) const {
    const SharedLibrary library{file(name).c_str()};
    Function* function = nullptr;
    if (!library.find(function, symbol))
      error = SharedLibrary::reason();
    return function;
  }

  /// A program that lies there.
  std::filesystem::path program(const std::string& name) const { return folder_ / name; }

private:
  std::filesystem::path file(const std::string& name) const {
    return folder_ / ("libtavrin-" + name + ".so");
  }

  std::filesystem::path folder_;
};

} // namespace tavrin
