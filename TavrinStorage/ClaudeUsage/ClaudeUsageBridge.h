#pragma once

#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLimits.h"
#include "TavrinPlatform/FileManager.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace tavrin {

/// Gets the plan's limits out of Claude Code: a status line command is handed them each time the
/// line is drawn. Connecting makes a script of ours that command; it keeps what it is handed in a
/// file, and then runs the command that was there before, if any, so that the line stays as it was.
class ClaudeUsageBridge {
public:
  class BridgeError : public std::runtime_error {
  public:
    enum class Code { noClaudeFolder, settingsUnreadable, notConnected };
    explicit BridgeError(Code code);
    Code code() const { return code_; }

  private:
    Code code_;
  };

  explicit ClaudeUsageBridge(const FileManager& fileManager);

  /// What the script was handed last.
  const std::filesystem::path& payloadURL() const { return payload_; }
  const std::filesystem::path& scriptURL() const { return script_; }
  /// Claude Code's own settings.
  const std::filesystem::path& settingsURL() const { return settings_; }

  /// Whether the status line is ours; settings that cannot be read say no.
  bool isConnected() const;
  /// No value before the first payload, or where it cannot be read.
  std::optional<ClaudeUsageLimits> limits() const;

  /// Throws BridgeError, and FileError where a file cannot be read or written. The settings are
  /// written last and whole or not at all; what they were is kept beside them, in a file that ends
  /// in ".tavrin-backup".
  void connect() const;
  void disconnect() const;

private:
  JSONValue::Object readSettings() const;
  /// Claude Code writes them too, without a lock; what it wrote is never written over.
  void changeSettings(const std::function<void(JSONValue::Object& settings)>& change) const;
  bool isOwn(const std::optional<std::string>& command) const;
  std::optional<std::string> chainedCommand() const;
  JSONValue chainedRefresh() const;
  std::string scriptText(const std::string& previous, const JSONValue& refresh) const;

  std::filesystem::path folder_;
  std::filesystem::path settings_;
  std::filesystem::path script_;
  std::filesystem::path payload_;
};

/// `text` as one word of a POSIX shell's.
std::string shellQuoted(std::string_view text);

} // namespace tavrin
