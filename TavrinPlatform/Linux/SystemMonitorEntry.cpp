#include "TavrinPlatform/Linux/SystemMonitorEntry.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <fstream>
#include <map>
#include <set>

namespace tavrin {
namespace {

using Entry = std::map<std::string, std::string, std::less<>>;
constexpr std::size_t longestLine = 4096;
constexpr int mostLines = 2000;

/// The main group of a desktop entry file.
Entry readEntry(const std::filesystem::path& file) {
  Entry entry;
  std::ifstream stream(file);
  std::string line;
  bool isMainGroup = false;
  for (int number = 0; number < mostLines && std::getline(stream, line); ++number) {
    if (line.starts_with('['))
      isMainGroup = line == "[Desktop Entry]";
    const auto equals = line.find('=');
    if (isMainGroup && equals != std::string::npos && line.size() <= longestLine)
      entry.emplace(line.substr(0, equals), line.substr(equals + 1));
  }
  return entry;
}

std::string value(const Entry& entry, std::string_view key) {
  const auto found = entry.find(key);
  return found == entry.end() ? std::string() : found->second;
}

/// Whether two lists have a word in common.
bool meet(const std::string& list, char separator, const std::string& other, char otherSeparator) {
  const auto words = [](const std::string& text, char at) {
    std::set<std::string> found;
    std::size_t begin = 0;
    while (begin < text.size()) {
      const auto end = std::min(text.find(at, begin), text.size());
      if (end > begin)
        found.insert(text.substr(begin, end - begin));
      begin = end + 1;
    }
    return found;
  };
  const auto first = words(list, separator);
  const auto second = words(other, otherSeparator);
  return std::any_of(first.begin(), first.end(),
                     [&](const auto& word) { return second.contains(word); });
}

bool isInstalled(const std::string& program) {
  const QString name = QString::fromStdString(program);
  return !program.empty() &&
         (program.starts_with('/') ? QFileInfo(name).isExecutable()
                                   : !QStandardPaths::findExecutable(name).isEmpty());
}

/// How well an entry suits; 0 for not at all.
int suitability(const Entry& entry, const std::string& desktop) {
  const std::string categories = value(entry, "Categories");
  if (value(entry, "Type") != "Application" || !meet(categories, ';', "Monitor", ';') ||
      !meet(categories, ';', "System", ';'))
    return 0;
  for (const char* key : {"NoDisplay", "Hidden", "Terminal"})
    if (value(entry, key) == "true")
      return 0;
  const std::string only = value(entry, "OnlyShowIn");
  if ((!only.empty() && !meet(only, ';', desktop, ':')) ||
      meet(value(entry, "NotShowIn"), ';', desktop, ':'))
    return 0;
  return !only.empty() || meet(categories, ';', desktop, ':') ? 2 : 1;
}

} // namespace

std::vector<std::string> execWords(std::string_view exec) {
  std::vector<std::string> words;
  std::string word;
  bool isWord = false;
  bool isQuoted = false;
  const auto finish = [&] {
    if (std::exchange(isWord, false))
      words.push_back(std::exchange(word, {}));
  };
  for (std::size_t i = 0; i < exec.size(); ++i) {
    const char c = exec[i];
    if (c == '"') {
      isQuoted = !isQuoted;
      isWord = true;
    } else if (c == '\\' && i + 1 < exec.size()) {
      word.push_back(exec[++i]);
      isWord = true;
    } else if (c == ' ' && !isQuoted) {
      finish();
    } else if (c == '%' && !isQuoted && i + 1 < exec.size()) {
      if (exec[++i] == '%') {
        word.push_back('%');
        isWord = true;
      }
    } else {
      word.push_back(c);
      isWord = true;
    }
  }
  finish();
  return words;
}

std::vector<std::string> systemMonitorCommand(const std::vector<std::filesystem::path>& folders,
                                              const std::string& currentDesktop) {
  std::set<std::string> seen;
  std::vector<std::string> best;
  int bestSuitability = 0;
  for (const auto& folder : folders) {
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (std::filesystem::directory_iterator file(folder, error), end; !error && file != end;
         file.increment(error))
      if (file->path().extension() == ".desktop")
        files.push_back(file->path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      if (!seen.insert(file.filename().string()).second)
        continue;
      const Entry entry = readEntry(file);
      const int suits = suitability(entry, currentDesktop);
      if (suits <= bestSuitability)
        continue;
      auto words = execWords(value(entry, "Exec"));
      const std::string test = value(entry, "TryExec");
      if (words.empty() || !isInstalled(words.front()) || (!test.empty() && !isInstalled(test)))
        continue;
      best = std::move(words);
      bestSuitability = suits;
    }
  }
  return best;
}

} // namespace tavrin
