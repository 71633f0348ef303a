#include "TavrinCore/Kinds/ClaudeUsageLine.h"

#include "TavrinCore/Base/JSONValue.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace tavrin;

/// A line gives an entry with counts in range or none, and what stands after it does not matter.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static ClaudeUsageLineReader reader;
  const auto room = std::make_unique<char[]>(size + ClaudeUsageLineReader::padding);
  std::memcpy(room.get(), bytes, size);
  std::memset(room.get() + size, 0, ClaudeUsageLineReader::padding);
  const auto entry = reader.entry({room.get(), size});
  std::memset(room.get() + size, '"', ClaudeUsageLineReader::padding);
  const auto again = reader.entry({room.get(), size});
  if (entry.has_value() != again.has_value())
    std::abort();
  if (!entry)
    return 0;
  for (const auto count : {entry->inputTokens, entry->outputTokens, entry->cacheCreationTokens,
                           entry->cacheReadTokens})
    if (count < 0 || count > mostTokensPerLine)
      std::abort();
  if (entry->id != again->id || entry->timestamp != again->timestamp)
    std::abort();
  return 0;
}
