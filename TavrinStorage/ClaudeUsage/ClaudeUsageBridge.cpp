#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/FileTimes.h"
#include "TavrinStorage/SharedDocument.h"

#include <sys/stat.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using Code = ClaudeUsageBridge::BridgeError::Code;

constexpr std::string_view previousLine = "\nPREVIOUS='";
/// The status line's own refresh interval, as JSON.
constexpr std::string_view refreshLine = "\nREFRESH='";
constexpr const char* refreshKey = "refreshInterval";
constexpr std::string_view escapedQuote = "'\\''";
constexpr int refreshSeconds = 30;
constexpr std::size_t longestPayload = 4 << 20;

constexpr std::string_view scriptHead = R"(#!/bin/sh
# Written by Tavrin for its Claude widget. Claude Code runs it to draw the status line; it keeps
# what it is handed for the widget, and leaves the line as it was. The widget's settings put
# things back.
)";

constexpr std::string_view scriptBody = R"SCRIPT(
input=$(cat)

# Several sessions may be here at once.
part="$PAYLOAD.$$.tmp"
[ -n "$input" ] && {
  mkdir -p "$(dirname "$PAYLOAD")" &&
    (umask 077 && printf '%s' "$input" > "$part") &&
    mv -f "$part" "$PAYLOAD" || rm -f "$part"
} > /dev/null 2>&1

if [ -n "$PREVIOUS" ]; then
  printf '%s' "$input" | sh -c "$PREVIOUS"
  exit $?
fi

[ -x /usr/bin/python3 ] || exit 0
printf '%s' "$input" | /usr/bin/python3 -c '
import json, math, sys, time

def member(value, *keys):
    for key in keys:
        value = value.get(key) if isinstance(value, dict) else None
    return value

def number(value):
    try:
        value = float(value) if type(value) in (int, float) else math.nan
    except OverflowError:
        return None
    return value if math.isfinite(value) else None

try:
    payload = json.loads(sys.stdin.buffer.read().decode("utf-8", "replace"))
except (ValueError, RecursionError):
    payload = None
model = member(payload, "model", "display_name")
folder = member(payload, "workspace", "current_dir")
used = number(member(payload, "rate_limits", "five_hour", "used_percentage"))
resets = number(member(payload, "rate_limits", "five_hour", "resets_at"))
parts = [model] if isinstance(model, str) and model else []
if isinstance(folder, str) and folder.strip("/"):
    parts.append(folder.rstrip("/").split("/")[-1])
if used is not None:
    parts.append("%d%%" % round(used))
    left = int(resets - time.time()) if resets is not None else 0
    if left > 0:
        parts.append("%dh %dm left" % (left // 3600, left % 3600 // 60))
line = "".join(c if c.isprintable() else "\ufffd" for c in " \u00b7 ".join(parts))
sys.stdout.buffer.write((line + "\n").encode("utf-8", "replace"))
'
)SCRIPT";

std::string message(Code code) {
  switch (code) {
  case Code::noClaudeFolder:
    return translated("Failed to find ~/.claude because Claude Code has not run here.");
  case Code::settingsUnreadable:
    return translated("Failed to read ~/.claude/settings.json because it is not valid JSON.");
  case Code::notConnected:
    return translated("Failed to disconnect because the status line is not Tavrin's.");
  }
  return "";
}

fs::path supportFolder(const FileManager& fileManager) {
  try {
    return fileManager.applicationSupportFolder() / "Tavrin";
  } catch (const FileError&) {
    return fileManager.homeFolder() / "Tavrin";
  }
}

/// The command of a settings' status line, if it has one.
std::optional<std::string> currentCommand(const JSONValue::Object& settings) {
  const auto line = settings.find("statusLine");
  const auto* command = line == settings.end() ? nullptr : line->second.member("command");
  if (command == nullptr || command->string() == nullptr || command->string()->empty())
    return std::nullopt;
  return *command->string();
}

/// Its refresh interval; null for none.
JSONValue currentRefresh(const JSONValue::Object& settings) {
  const auto line = settings.find("statusLine");
  const auto* refresh = line == settings.end() ? nullptr : line->second.member(refreshKey);
  return refresh == nullptr ? JSONValue() : *refresh;
}

/// The word that `shellQuoted` made, `start` bytes behind `at`; empty where there is none.
std::string quotedAt(std::string_view text, std::size_t at, std::size_t start) {
  std::string word;
  std::string_view rest = at == std::string_view::npos ? "" : text.substr(at + start);
  while (!rest.empty()) {
    if (rest.starts_with(escapedQuote)) {
      word += '\'';
      rest.remove_prefix(escapedQuote.size());
    } else if (rest.front() == '\'') {
      return word;
    } else {
      word += rest.front();
      rest.remove_prefix(1);
    }
  }
  return word;
}

/// The path as a command: quoted only where a shell would take it apart.
std::string command(const fs::path& script) {
  const std::string path = script.string();
  const bool isPlain = path.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                              "0123456789/._-+@%") == std::string::npos;
  return isPlain ? path : shellQuoted(path);
}

/// The status line as it is, members of other tools' included, with another command.
JSONValue::Object statusLine(const JSONValue::Object& settings, const std::string& command) {
  const auto line = settings.find("statusLine");
  JSONValue::Object changed;
  if (line != settings.end() && line->second.object() != nullptr)
    changed = *line->second.object();
  changed["type"] = "command";
  changed["command"] = command;
  return changed;
}

} // namespace

std::string shellQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'')
      quoted += escapedQuote;
    else
      quoted += character;
  }
  return quoted + "'";
}

ClaudeUsageBridge::BridgeError::BridgeError(Code code)
    : std::runtime_error(message(code)), code_(code) {}

ClaudeUsageBridge::ClaudeUsageBridge(const FileManager& fileManager)
    : folder_(fileManager.homeFolder() / ".claude"), settings_(folder_ / "settings.json"),
      script_(supportFolder(fileManager) / "claude-statusline.sh"),
      payload_(supportFolder(fileManager) / "claude-usage.json") {}

bool ClaudeUsageBridge::isConnected() const {
  try {
    return isOwn(currentCommand(readSettings()));
  } catch (const std::runtime_error&) {
    return false;
  }
}

std::optional<ClaudeUsageLimits> ClaudeUsageBridge::limits() const {
  try {
    const auto payload = readFile(payload_, longestPayload);
    struct stat info {};
    if (!payload || ::stat(payload_.c_str(), &info) != 0)
      return std::nullopt;
    const auto readAt =
        Date::fromUnixSeconds(static_cast<double>(modificationTime(info).tv_sec) +
                              static_cast<double>(modificationTime(info).tv_nsec) * 1e-9);
    return ClaudeUsageLimitsFormat::limits(*payload, readAt);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

void ClaudeUsageBridge::connect() const {
  changeSettings([this](JSONValue::Object& settings) {
    const auto current = currentCommand(settings);
    // Also one that was wrapped by hand: chained to itself the script would never end.
    const bool runsScript = current && current->find(script_.string()) != std::string::npos;
    const bool isConnected = isOwn(current) || runsScript;
    const auto previous = isConnected ? chainedCommand() : current;
    const auto refresh = isConnected ? chainedRefresh() : currentRefresh(settings);
    std::error_code ignored; // the write says what is wrong
    fs::create_directories(script_.parent_path(), ignored);
    writeFileAtomically(script_, scriptText(previous.value_or(""), refresh));
    if (::chmod(script_.c_str(), 0755) != 0)
      throw FileError(
          failure(translated("make {script} executable", {{"script", script_.string()}}),
                  "its owner is another"));
    auto line = statusLine(settings, command(script_));
    line[refreshKey] = refreshSeconds;
    settings["statusLine"] = std::move(line);
  });
}

void ClaudeUsageBridge::disconnect() const {
  changeSettings([this](JSONValue::Object& settings) {
    if (!isOwn(currentCommand(settings)))
      throw BridgeError(Code::notConnected);
    if (const auto previous = chainedCommand()) {
      auto line = statusLine(settings, *previous);
      line.erase(refreshKey);
      if (auto refresh = chainedRefresh(); !refresh.isNull())
        line[refreshKey] = std::move(refresh);
      settings["statusLine"] = std::move(line);
    } else {
      settings.erase("statusLine");
    }
  });
  std::error_code ignored;
  fs::remove(script_, ignored);
}

void ClaudeUsageBridge::changeSettings(
    const std::function<void(JSONValue::Object& settings)>& change) const {
  changeSharedFile(settings_, [&](const FileStamp& seen) {
    auto settings = readSettings();
    change(settings);
    // The backup may hold secrets that the settings' own permissions hide.
    if (const auto bytes = readFile(settings_))
      writeFileAtomically(settings_.string() + ".tavrin-backup", *bytes, FileAccess::ownerOnly);
    return writeJSONFileIfUnchanged(settings_, settings, seen);
  });
}

JSONValue::Object ClaudeUsageBridge::readSettings() const {
  std::error_code ignored;
  if (!fs::is_directory(folder_, ignored))
    throw BridgeError(Code::noClaudeFolder);
  const auto bytes = readFile(settings_);
  if (!bytes)
    return {};
  try {
    const auto document = JSONValue::parse(*bytes);
    if (const auto* object = document.object())
      return *object;
  } catch (const JSONError&) {
  }
  throw BridgeError(Code::settingsUnreadable);
}

bool ClaudeUsageBridge::isOwn(const std::optional<std::string>& current) const {
  return current && (*current == script_.string() || *current == command(script_));
}

/// The command that the script runs after its own work, read back out of its text.
std::optional<std::string> ClaudeUsageBridge::chainedCommand() const {
  const auto text = readFile(script_).value_or("");
  auto previous = quotedAt(text, text.find(previousLine), previousLine.size());
  return previous.empty() ? std::nullopt : std::optional(std::move(previous));
}

/// The refresh interval that the status line had before; null for none.
JSONValue ClaudeUsageBridge::chainedRefresh() const {
  const auto text = readFile(script_).value_or("");
  try {
    // The last one: the command before may hold such a line.
    return JSONValue::parse(quotedAt(text, text.rfind(refreshLine), refreshLine.size()));
  } catch (const JSONError&) {
    return {};
  }
}

std::string ClaudeUsageBridge::scriptText(const std::string& previous,
                                          const JSONValue& refresh) const {
  return std::string(scriptHead) + "PREVIOUS=" + shellQuoted(previous) +
         "\nPAYLOAD=" + shellQuoted(payload_.string()) +
         "\nREFRESH=" + shellQuoted(refresh.compact()) + "\n" + std::string(scriptBody);
}

} // namespace tavrin
