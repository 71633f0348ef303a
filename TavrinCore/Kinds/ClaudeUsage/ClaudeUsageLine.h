#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageEntries.h"

#include <memory>
#include <optional>
#include <string_view>

namespace tavrin {

/// Reads lines of session logs: one JSON object a line, of which only those of assistant messages
/// tell what was used. One object is for one thread.
class ClaudeUsageLineReader {
public:
  /// A line without these bytes tells nothing about usage and needs no parsing.
  static constexpr std::string_view marker = "\"usage\"";
  /// So many bytes after a line must be readable; what they are does not matter.
  static constexpr std::size_t padding = 64;

  ClaudeUsageLineReader();
  ~ClaudeUsageLineReader();

  /// No value for a line that is no JSON object, has no usage, or no timestamp that can be read.
  /// `project` is left to the caller. Counts that are missing, no number or negative are 0,
  /// those beyond `mostTokensPerLine` are that many.
  std::optional<ClaudeUsageEntry> entry(std::string_view line);

private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

} // namespace tavrin
