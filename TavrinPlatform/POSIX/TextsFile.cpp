#include "TavrinPlatform/Files/TextsFile.h"

#include "TavrinCore/Text/TextCatalogue.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/POSIX/ProgramPath.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

bool isEnglish(std::string_view language) {
  return language == "C" || language == "POSIX" || language == "en" ||
         (language.starts_with("en_") && language.find('@') == std::string_view::npos);
}

/// "de_AT.UTF-8@euro" as "de_AT@euro", "de_AT", "de@euro", "de". A name that is a path is none.
void append(std::vector<std::string>& languages, std::string_view wish) {
  if (wish.empty() || wish.find('/') != std::string_view::npos)
    return;
  const auto add = [&](std::string language) {
    if (!language.empty() && std::ranges::count(languages, language) == 0)
      languages.push_back(std::move(language));
  };
  const auto at = wish.find('@');
  const std::string variant(at == std::string_view::npos ? "" : wish.substr(at));
  const auto place = wish.substr(0, wish.find_first_of(".@"));
  const auto language = place.substr(0, place.find('_'));
  for (const auto name : {place, language}) {
    add(std::string(name) + variant);
    add(std::string(name));
  }
}

/// The file's bytes, for the rest of the process's life; empty for none.
std::string_view mapped(const fs::path& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (!file || ::fstat(file.number(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size <= 0)
    return {};
  const auto size = static_cast<std::size_t>(info.st_size);
  void* bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0);
  return bytes == MAP_FAILED ? std::string_view()
                             : std::string_view(static_cast<const char*>(bytes), size);
}

} // namespace

std::vector<std::string> wantedLanguages() {
  std::vector<std::string> languages;
  if (const auto wish = environment("TAVRIN_LANGUAGE"); !wish.empty()) {
    append(languages, wish);
    return languages;
  }
  std::string_view locale;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (locale = environment(name); !locale.empty())
      break;
  const auto plain = locale.substr(0, locale.find_first_of(".@"));
  if (plain.empty() || plain == "C" || plain == "POSIX")
    return languages;
  for (auto list = environment("LANGUAGE"); !list.empty();) {
    const auto end = std::min(list.find(':'), list.size());
    append(languages, list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  append(languages, locale);
  return languages;
}

TextsFile findTexts(const fs::path& program, const std::vector<std::string>& languages) {
  // From a bundle's program up to the prefix: MacOS, Contents, the bundle, tavrin, lib.
  constexpr int highest = 6;
  for (const auto& language : languages) {
    if (isEnglish(language))
      return {};
    auto folder = program.parent_path();
    for (int i = 0; i < highest && !folder.empty(); ++i, folder = folder.parent_path()) {
      for (const char* place : {"share/locale", "Resources/locale"}) {
        auto path = folder / place / language / "LC_MESSAGES/tavrin.mo";
        std::error_code error;
        if (fs::is_regular_file(path, error))
          return {std::move(path), language};
      }
      if (folder == folder.root_path())
        break;
    }
  }
  return {};
}

void loadTexts() {
  const auto languages = wantedLanguages();
  if (languages.empty())
    return;
  const auto file = findTexts(programPath(), languages);
  if (file.path.empty())
    return;
  static std::optional<TextCatalogue> catalogue;
  catalogue = TextCatalogue::of(mapped(file.path));
  if (catalogue)
    useTexts(&*catalogue, file.language);
}

} // namespace tavrin
