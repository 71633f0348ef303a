#include "TavrinCore/Desktop/DesktopEntry.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

namespace {

void check(bool isTrue) {
  if (!isTrue)
    std::abort();
}

} // namespace

/// Any text is read as an entry in German; what is found keeps its own rules.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  for (const char* locale : {"de_AT.UTF-8@euro", "C"}) {
    const auto entry = DesktopEntry::parse(text, locale);
    if (!entry)
      continue;
    for (const auto* value : {&entry->name, &entry->comment, &entry->icon, &entry->exec})
      check(isUTF8(*value) && value->find('\0') == std::string::npos);
    for (const auto& action : entry->actions)
      check(entry->action(action.id) == &action && !action.name.empty());
    check(!entry->isShownIn("KDE") || entry->isApplication());
    for (const auto& word : execWords(entry->exec, {entry->name, entry->icon, "/a b"}))
      check(word.find('\0') == std::string::npos);
  }
  execWords(text, {"name", "icon", "file"});
  localeKeys(text);
  return 0;
}
