#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLine.h"

#include "TavrinCore/Base/ISO8601.h"

#include <algorithm>
#include <simdjson.h>

namespace tavrin {

namespace ondemand = simdjson::ondemand;

static_assert(ClaudeUsageLineReader::padding >= simdjson::SIMDJSON_PADDING);

struct ClaudeUsageLineReader::Parser {
  ondemand::parser parser;
};

namespace {

/// What a line says; the texts are the parser's, as they are escaped in the line.
struct Line {
  std::string_view timestamp;
  std::string_view requestID;
  std::string_view uuid;
  std::string_view messageID;
  std::optional<ClaudeUsageEntry> usage;
};

/// A text without its quotes; empty for another value. Ids and times have nothing to unescape.
std::string_view text(ondemand::value value) {
  std::string_view token = value.raw_json_token();
  const auto end = token.find_last_of('"');
  if (token.empty() || token.front() != '"' || end == 0)
    return {};
  return token.substr(1, end - 1);
}

/// A number that the parser has no type for: one of more digits than a machine word, or a power
/// beyond a double's.
std::int64_t countOfLongNumber(std::string_view token) {
  token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const bool isNumber = !token.empty() && token.front() >= '1' && token.front() <= '9' &&
                        token.find_first_not_of("0123456789.eE+-") == std::string_view::npos &&
                        isDigit(token.back());
  return isNumber && token.find("e-") == std::string_view::npos &&
                 token.find("E-") == std::string_view::npos
             ? mostTokensPerLine
             : 0;
}

std::int64_t count(ondemand::value value) {
  ondemand::number number;
  if (value.type().value_unsafe() != ondemand::json_type::number)
    return 0;
  if (value.get_number().get(number) != simdjson::SUCCESS)
    return countOfLongNumber(value.raw_json_token());
  if (number.get_number_type() == ondemand::number_type::floating_point_number) {
    const double amount = number.get_double();
    return amount >= 0 ? static_cast<std::int64_t>(std::min(amount, double(mostTokensPerLine))) : 0;
  }
  if (number.is_uint64())
    return mostTokensPerLine;
  return std::clamp<std::int64_t>(number.get_int64(), 0, mostTokensPerLine);
}

/// Calls `handle(key, value)` for each member; false where the object is broken.
template <class Handler> bool forEachMember(ondemand::object object, const Handler& handle) {
  for (auto member : object) {
    ondemand::field field;
    if (std::move(member).get(field) != simdjson::SUCCESS)
      return false;
    const ondemand::raw_json_string key = field.key();
    if (!handle(key, field.value()))
      return false;
  }
  return true;
}

bool readUsage(ondemand::value value, ClaudeUsageEntry& entry) {
  ondemand::object object;
  if (value.get_object().get(object) != simdjson::SUCCESS)
    return false;
  return forEachMember(object, [&](ondemand::raw_json_string key, ondemand::value tokens) {
    if (key == "input_tokens")
      entry.inputTokens = count(tokens);
    else if (key == "output_tokens")
      entry.outputTokens = count(tokens);
    else if (key == "cache_creation_input_tokens")
      entry.cacheCreationTokens = count(tokens);
    else if (key == "cache_read_input_tokens")
      entry.cacheReadTokens = count(tokens);
    return true;
  });
}

bool isObject(ondemand::value value) {
  ondemand::json_type type;
  return value.type().get(type) == simdjson::SUCCESS && type == ondemand::json_type::object;
}

bool readMessage(ondemand::value value, Line& line) {
  ondemand::object object;
  if (value.get_object().get(object) != simdjson::SUCCESS)
    return false;
  return forEachMember(object, [&](ondemand::raw_json_string key, ondemand::value member) {
    if (key == "id")
      line.messageID = text(member);
    else if (key == "usage" && isObject(member))
      return readUsage(member, line.usage.emplace());
    return true;
  });
}

bool readLine(ondemand::document& document, Line& line) {
  ondemand::object object;
  if (document.get_object().get(object) != simdjson::SUCCESS)
    return false;
  return forEachMember(object, [&](ondemand::raw_json_string key, ondemand::value member) {
    if (key == "timestamp")
      line.timestamp = text(member);
    else if (key == "requestId")
      line.requestID = text(member);
    else if (key == "uuid")
      line.uuid = text(member);
    else if (key == "message" && isObject(member))
      return readMessage(member, line);
    return true;
  });
}

} // namespace

ClaudeUsageLineReader::ClaudeUsageLineReader() : parser_(std::make_unique<Parser>()) {}
ClaudeUsageLineReader::~ClaudeUsageLineReader() = default;

std::optional<ClaudeUsageEntry> ClaudeUsageLineReader::entry(std::string_view line) {
  ondemand::document document;
  Line read;
  if (line.empty() ||
      parser_->parser.iterate(line.data(), line.size(), line.size() + padding).get(document) !=
          simdjson::SUCCESS ||
      !readLine(document, read) || !read.usage)
    return std::nullopt;
  // Two objects on one line are what becomes of a line that was never finished: none of them.
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
    return std::nullopt;
  const auto timestamp = dateFromISO8601(read.timestamp);
  if (!timestamp)
    return std::nullopt;
  read.usage->timestamp = *timestamp;
  read.usage->id = ClaudeUsageID::of(read.messageID, read.requestID, read.uuid);
  return read.usage;
}

} // namespace tavrin
