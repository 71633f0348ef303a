#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLine.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Base/JSONValue.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace tavrin;

namespace {

bool standsTwice(std::string_view text, std::string_view key) {
  const auto at = text.find(key);
  return at != std::string_view::npos && text.find(key, at + 1) != std::string_view::npos;
}

/// Whether `read` is what the usage says under `key`. Fractions and numbers out of range are for
/// the reader alone.
bool isCount(std::int64_t read, const JSONValue& usage, std::string_view key) {
  const auto* value = usage.member(key);
  if (value == nullptr || !value->doubleValue())
    return read == 0;
  const auto number = value->integerValue();
  return !number || read == std::clamp<std::int64_t>(*number, 0, mostTokensPerLine);
}

/// A line that is JSON beyond doubt tells what the whole parser finds in it.
void compare(std::string_view line, const std::optional<ClaudeUsageEntry>& entry) {
  constexpr std::array keys = {"\"message\"",
                               "\"usage\"",
                               "\"timestamp\"",
                               "\"input_tokens\"",
                               "\"output_tokens\"",
                               "\"cache_read_input_tokens\"",
                               "\"cache_creation_input_tokens\""};
  if (line.find('\\') != std::string_view::npos)
    return; // the reader compares keys as they are written
  if (std::any_of(keys.begin(), keys.end(),
                  [&](const char* key) { return standsTwice(line, key); }))
    return;
  JSONValue document;
  try {
    document = JSONValue::parse(line);
  } catch (const JSONError&) {
    return;
  }
  const auto* message = document.member("message");
  const auto* usage = message == nullptr ? nullptr : message->member("usage");
  const auto* time = document.member("timestamp");
  const auto date = time == nullptr || time->string() == nullptr ? std::nullopt
                                                                 : dateFromISO8601(*time->string());
  const bool tells = usage != nullptr && usage->object() != nullptr && date;
  if (tells != entry.has_value())
    std::abort();
  if (!tells)
    return;
  if (entry->timestamp != *date)
    std::abort();
  if (!isCount(entry->inputTokens, *usage, "input_tokens") ||
      !isCount(entry->outputTokens, *usage, "output_tokens") ||
      !isCount(entry->cacheCreationTokens, *usage, "cache_creation_input_tokens") ||
      !isCount(entry->cacheReadTokens, *usage, "cache_read_input_tokens"))
    std::abort();
}

} // namespace

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
  compare({reinterpret_cast<const char*>(bytes), size}, entry);
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
