#include "TavrinPlatform/POSIX/SymbolicLinks.h"

#include "TavrinCore/Base/Errors.h"

#include <system_error>

namespace tavrin {

namespace fs = std::filesystem;

fs::path followLinks(const fs::path& file) {
  constexpr int mostLinks = 40;
  const auto refuse = [](const std::string& what, std::string_view reason) {
    throw FileError(failure(what, reason), reason);
  };
  fs::path target = file;
  std::error_code error;
  for (int links = 0; fs::is_symlink(target, error); ++links) {
    if (links == mostLinks)
      refuse(translated("replace {file}", {{"file", file.string()}}),
             translated("its symbolic links lead in a circle"));
    const auto next = fs::read_symlink(target, error);
    if (error)
      refuse(translated("follow the symbolic link {link}", {{"link", target.string()}}),
             error.message());
    target = target.parent_path() / next;
  }
  return target;
}

fs::path folderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace tavrin
