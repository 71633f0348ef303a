#include "TavrinCore/Desktop/KeyFile.h"

#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {

void eachKeyFileLine(
    std::string_view text,
    const std::function<void(std::string_view, std::string_view, std::string_view)>& take) {
  std::string_view group;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.size() > longestKeyFileLine)
      continue;
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    const std::string_view bare = trimmed(line, " \t\r");
    if (bare.empty() || bare.front() == '#')
      continue;
    if (bare.front() == '[') {
      group = bare.ends_with(']') ? bare.substr(1, bare.size() - 2) : std::string_view();
      continue;
    }
    const auto equals = line.find('=');
    if (group.empty() || equals == std::string_view::npos)
      continue;
    const auto key = trimmed(line.substr(0, equals), " \t\r");
    const auto value = withoutLeadingBlanks(line.substr(equals + 1));
    if (!key.empty())
      take(group, key, value);
  }
}

} // namespace tavrin
