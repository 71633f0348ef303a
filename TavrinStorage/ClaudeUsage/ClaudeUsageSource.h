#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageEntries.h"
#include "TavrinStorage/ClaudeUsage/UsageLogFolder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavrin {

class UsageLogFile;

/// What Claude Code logged about tokens, in its folder's "projects/**/*.jsonl". Each refresh reads
/// only what was added since the one before; files that were cut, replaced or renamed over are
/// noticed and read anew. Blocks while it reads, on several cores where there is much to read; one
/// object is for one thread at a time.
class ClaudeUsageSource {
public:
  /// `root` is the ".claude" folder in the user's home.
  explicit ClaudeUsageSource(std::filesystem::path root);
  ~ClaudeUsageSource();

  bool isAvailable() const;

  /// The messages logged at or after `since`; valid until the next call. Files that were not
  /// modified since are passed over. What cannot be read counts as not there.
  const ClaudeUsageEntries& entries(Date since);

  /// Bytes of logs read so far.
  std::uint64_t bytesRead() const { return bytesRead_; }

private:
  /// How far a log was read, and what was in it.
  struct Cursor {
    /// As the log was when it was read.
    UsageLogState state;
    /// Whether a later change must show in `state`: not while the file's clock still stands where
    /// it stood at the last change.
    bool isSettled = false;
    /// The end of the last complete line that was read.
    std::int64_t offset = 0;
    /// The last bytes before it, to tell a file that grew from one that was written anew.
    std::string tail;
    std::vector<ClaudeUsageEntry> entries;
    ClaudeUsageProjectName project;
    /// Of `entries`, those that are in `entries_` already.
    std::size_t counted = 0;
    bool isThere = false;
    bool wasReplaced = false;
  };
  using Cursors = std::unordered_map<std::string, Cursor>;
  using Jobs = std::vector<Cursors::value_type*>;

  Jobs findChanges(Date since);
  void readAll(Jobs jobs, Date since);
  static void read(const std::string& path, Cursor& cursor, UsageLogFile& file, Date since);
  void dropMissing();
  void dropOlder(Date since);
  void count(const Jobs& jobs);
  ClaudeUsageProjectName projectName(const std::string& folder);

  std::filesystem::path root_;
  UsageLogFolder logs_;
  Cursors cursors_;
  std::unordered_map<std::string, ClaudeUsageProjectName> projectNames_;
  ClaudeUsageEntries entries_;
  Date since_;
  bool mustCountAll_ = false;
  std::uint64_t bytesRead_ = 0;
};

} // namespace tavrin
