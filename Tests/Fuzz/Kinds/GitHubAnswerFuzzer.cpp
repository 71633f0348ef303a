#include "TavrinCore/Kinds/GitHub/GitHubQuery.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever GitHub answers, what is made of it keeps its own rules.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto answer = GitHubQuery::answer(text);
  GitHubQuery::quoted(text);
  if (!answer)
    return 0;
  GitHubSettings settings;
  settings.limit = 3;
  if (GitHubBoard::select(answer->items, settings).size() > 3)
    std::abort();
  if (const auto& contributions = answer->contributions) {
    if (contributions->streak() > static_cast<int>(contributions->days.size()))
      std::abort();
    for (const auto& day : contributions->days)
      if (const int level = contributions->level(day.count); level < 0 || level > 4)
        std::abort();
    if (contributions->columns(5).size() > 5)
      std::abort();
    contributions->busiest();
  }
  return 0;
}
