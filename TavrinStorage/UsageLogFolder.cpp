#include "TavrinStorage/UsageLogFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr int mostLevels = 8;
constexpr std::string_view extension = ".jsonl";

Date modificationDate(const struct stat& info) {
  return Date::fromUnixSeconds(static_cast<double>(info.st_mtim.tv_sec) +
                               static_cast<double>(info.st_mtim.tv_nsec) * 1e-9);
}

UsageLogState state(const struct stat& info) {
  return {info.st_dev, info.st_ino, S_ISREG(info.st_mode) ? info.st_size : -1,
          modificationDate(info)};
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

class Walk {
public:
  using IsProject = std::function<bool(std::string_view)>;
  using Found = std::function<void(const std::string&, std::string_view, const UsageLogState&)>;

  Walk(const IsProject& isProject, const Found& found) : isProject_(isProject), found_(found) {}

  void folder(int descriptor, const std::string& path, const std::string& project, int level) {
    if (descriptor < 0)
      return;
    const std::unique_ptr<DIR, CloseFolder> entries(::fdopendir(descriptor));
    if (!entries) {
      ::close(descriptor);
      return;
    }
    while (const auto* entry = ::readdir(entries.get())) {
      const std::string_view name = entry->d_name;
      if (name.ends_with(extension) && name.size() > extension.size())
        file(descriptor, path, project, entry->d_name);
      else if (name != "." && name != ".." && level < mostLevels &&
               (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN))
        folder(::openat(descriptor, entry->d_name,
                        O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK),
               path + "/" + entry->d_name, isProject_(name) ? std::string(name) : project,
               level + 1);
    }
  }

private:
  void file(int folder, const std::string& path, const std::string& project, const char* name) {
    struct stat info {};
    if (::fstatat(folder, name, &info, 0) == 0 && S_ISREG(info.st_mode))
      found_(path + "/" + name, project, state(info));
  }

  const IsProject& isProject_;
  const Found& found_;
};

} // namespace

void forEachUsageLog(
    const std::filesystem::path& folder, const std::function<bool(std::string_view)>& isProject,
    const std::function<void(const std::string&, std::string_view, const UsageLogState&)>& found) {
  Walk(isProject, found)
      .folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), folder.string(), {}, 0);
}

UsageLogState usageLogState(int descriptor) {
  struct stat info {};
  return ::fstat(descriptor, &info) == 0 ? state(info) : UsageLogState{0, 0, -1, {}};
}

} // namespace tavrin
