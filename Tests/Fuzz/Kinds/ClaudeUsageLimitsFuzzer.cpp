#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLimits.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// What can be read of a payload can be written, read back, and told.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto limits = ClaudeUsageLimitsFormat::limits(text, {1});
  if (!limits)
    return 0;
  if (decode<ClaudeUsageLimits>(JSONValue::parse(encode(*limits).compact())) != *limits)
    std::abort();
  for (const auto& window : {limits->fiveHour, limits->sevenDay})
    if (window && ClaudeUsageLimitsFormat::untilReset(window->resetsAt, {0}) == std::string())
      std::abort();
  return 0;
}
