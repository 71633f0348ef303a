#include "TavrinPlatform/Linux/Applications/DesktopEntries.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <set>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".desktop";
constexpr std::size_t mostFolders = 200;
constexpr std::size_t mostFiles = 20'000;

/// The entries' files below `folder`, as id and path. A folder that links lead back to counts once.
void collect(const fs::path& folder, const std::string& prefix, std::set<fs::path>& seen,
             std::vector<std::pair<std::string, fs::path>>& found) {
  std::error_code error;
  if (const auto real = fs::canonical(folder, error); error || !seen.insert(real).second)
    return;
  for (fs::directory_iterator file(folder, error), end; !error && file != end;
       file.increment(error)) {
    const std::string name = file->path().filename().string();
    if (found.size() >= mostFiles)
      return;
    std::error_code ignored;
    if (name.ends_with(ending))
      found.emplace_back(prefix + name, file->path());
    else if (seen.size() < mostFolders && file->is_directory(ignored))
      collect(file->path(), prefix + name + "-", seen, found);
  }
}

std::string localeOf(const FileManager& files) {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const auto value = files.environment(name); value && !value->empty())
      return *value;
  return {};
}

std::vector<std::string> parted(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const auto end = std::min(text.find(separator, begin), text.size());
    if (end > begin)
      parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

} // namespace

std::vector<fs::path> dataFolders(const FileManager& files) {
  std::vector<fs::path> folders;
  try {
    folders.push_back(files.applicationSupportFolder());
  } catch (const FileError&) {
    // The system's applications are there all the same.
  }
  auto list = files.environment("XDG_DATA_DIRS").value_or("");
  if (list.empty())
    list = "/usr/local/share:/usr/share";
  for (const auto& folder : parted(list, ':'))
    if (folder.starts_with('/') && std::ranges::find(folders, fs::path(folder)) == folders.end())
      folders.emplace_back(folder);
  return folders;
}

bool isInstalled(const std::string& program) {
  const QString name = QString::fromStdString(program);
  return !program.empty() &&
         (program.starts_with('/') ? QFileInfo(name).isExecutable() && QFileInfo(name).isFile()
                                   : !QStandardPaths::findExecutable(name).isEmpty());
}

bool hasProgram(const DesktopEntry& entry) {
  if (!entry.tryExec.empty() && !isInstalled(entry.tryExec))
    return false;
  const auto words = execWords(entry.exec);
  return words.empty() ? entry.isActivatedOnBus : isInstalled(words.front());
}

DesktopEntries::DesktopEntries(std::vector<fs::path> folders, std::string locale)
    : folders_(std::move(folders)), locale_(std::move(locale)) {}

DesktopEntries DesktopEntries::ofUser(const FileManager& files) {
  auto folders = dataFolders(files);
  for (auto& folder : folders)
    folder /= "applications";
  return {std::move(folders), localeOf(files)};
}

std::optional<FoundEntry> DesktopEntries::read(std::string id, const fs::path& file) const {
  try {
    const auto text = readFile(file, DesktopEntry::maximumSize);
    if (!text)
      return std::nullopt;
    auto entry = DesktopEntry::parse(*text, locale_);
    return entry ? std::optional(FoundEntry{std::move(id), file, std::move(*entry)}) : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;
  }
}

std::vector<FoundEntry> DesktopEntries::all() const {
  std::set<std::string> seen;
  std::vector<FoundEntry> entries;
  for (const auto& folder : folders_) {
    std::vector<std::pair<std::string, fs::path>> files;
    std::set<fs::path> folders;
    collect(folder, {}, folders, files);
    std::ranges::sort(files);
    for (auto& [id, file] : files) {
      if (!seen.insert(id).second)
        continue;
      if (auto found = read(std::move(id), file))
        entries.push_back(std::move(*found));
    }
  }
  return entries;
}

std::optional<fs::path> DesktopEntries::fileOf(const std::string& id) const {
  for (const auto& folder : folders_) {
    // A "-" of the id may stand for a subfolder.
    std::vector<fs::path> candidates{folder / id};
    for (auto dash = id.find('-'); dash != std::string::npos; dash = id.find('-', dash + 1))
      candidates.push_back(folder / id.substr(0, dash) / id.substr(dash + 1));
    std::error_code ignored;
    for (const auto& file : candidates)
      if (fs::is_regular_file(file, ignored))
        return file;
  }
  return std::nullopt;
}

std::optional<FoundEntry> DesktopEntries::applicationCalled(std::string_view name) const {
  const std::string wanted = asciiLowered(trimmed(name));
  if (wanted.empty() || wanted.find('/') != std::string::npos)
    return std::nullopt;
  const auto isCalled = [&](const FoundEntry& found) {
    const auto words = execWords(found.entry.exec);
    const std::string program =
        words.empty() ? std::string() : fs::path(words.front()).filename().string();
    return found.entry.isApplication() && hasProgram(found.entry) &&
           (asciiLowered(program) == wanted || asciiLowered(found.entry.name) == wanted);
  };
  auto entries = all();
  // One that menus show is meant rather than one they do not.
  std::ranges::stable_partition(entries,
                                [](const FoundEntry& found) { return !found.entry.isNoDisplay; });
  const auto found = std::ranges::find_if(entries, isCalled);
  return found != entries.end() ? std::optional(std::move(*found)) : std::nullopt;
}

std::optional<FoundEntry> DesktopEntries::application(const std::string& name) const {
  if (name.empty() || name.find('\0') != std::string::npos)
    return std::nullopt;
  std::string id = name.ends_with(ending) ? name : name + std::string(ending);
  std::optional<fs::path> file;
  if (name.starts_with('/')) {
    file = name;
    id = file->filename().string();
    for (const auto& folder : folders_)
      if (const auto below = file->lexically_relative(folder);
          !below.empty() && *below.begin() != "..") {
        id = below.string();
        std::ranges::replace(id, '/', '-');
      }
  } else if (id.find('/') == std::string::npos) {
    file = fileOf(id);
  }
  auto found = file ? read(id, *file) : std::nullopt;
  if (!found || !found->entry.isApplication() || !hasProgram(found->entry))
    return std::nullopt;
  return found;
}

} // namespace tavrin
