#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using BridgeError = ClaudeUsageBridge::BridgeError;

class Home final : public FileManager {
public:
  explicit Home(fs::path folder) : folder(std::move(folder)) {}
  fs::path homeFolder() const override { return folder; }
  fs::path applicationSupportFolder() const override {
    if (!support)
      throw FileError("Failed to find Application Support because the user has none");
    return *support;
  }
  fs::path cachesFolder() const override { return folder / ".cache"; }
  fs::path stateFolder() const override { return folder / ".local/state"; }
  std::optional<std::string> environment(const std::string&) const override { return {}; }

  fs::path folder;
  std::optional<fs::path> support = folder / ".local/share";
};

struct Outcome {
  std::string output;
  int status = 0;
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << outcome.status << ": " << testing::PrintToString(outcome.output);
}

/// What Claude Code hands over.
const std::string payload =
    R"({"hook_event_name":"Status","session_id":"a","model":{"id":"m","display_name":"Opus"},)"
    R"("workspace":{"current_dir":"/home/ann/größer app","project_dir":"/home/ann"},)"
    R"("rate_limits":{"five_hour":{"used_percentage":41.6,"resets_at":99999999999},)"
    R"("seven_day":{"utilization":7}},"subscription_type":"max","note":"it's $HOME \"%s\" \\n"})";

class ClaudeUsageBridgeTest : public testing::Test {
protected:
  ClaudeUsageBridgeTest() { fs::create_directory(folder / ".claude"); }

  Outcome run(const std::string& command, const std::string& input = payload) {
    put(folder / "input", input);
    FILE* pipe = ::popen(
        fmt::format("({}) < {} 2>/dev/null", command, (folder / "input").string()).c_str(), "r");
    Outcome outcome;
    std::array<char, 4096> buffer{};
    while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
      outcome.output.append(buffer.data(), count);
    outcome.status = WEXITSTATUS(::pclose(pipe));
    return outcome;
  }
  std::string settings() { return contents(bridge.settingsURL()); }
  void setCommand(const std::string& command) {
    writeJSONFile(bridge.settingsURL(),
                  JSONValue::Object{{"statusLine", JSONValue::Object{{"type", "command"},
                                                                     {"command", command}}}});
  }
  std::string command() {
    return *JSONValue::parse(settings()).member("statusLine")->member("command")->string();
  }
  fs::path backup() { return bridge.settingsURL().string() + ".tavrin-backup"; }

  TemporaryFolder folder;
  Home home{folder.path()};
  ClaudeUsageBridge bridge{home};
};

TEST_F(ClaudeUsageBridgeTest, ConnectsAndDisconnectsWithoutSettings) {
  EXPECT_FALSE(bridge.isConnected());
  bridge.connect();
  EXPECT_TRUE(bridge.isConnected());
  const auto line = *JSONValue::parse(settings()).member("statusLine");
  EXPECT_EQ(line.compact(),
            fmt::format(R"({{"command":"{}","refreshInterval":30,"type":"command"}})",
                        bridge.scriptURL().string()));
  struct stat info {};
  ::stat(bridge.scriptURL().c_str(), &info);
  EXPECT_EQ(info.st_mode & 0777, 0755U);
  EXPECT_FALSE(fs::exists(backup())) << "there was nothing to keep";
  bridge.disconnect();
  EXPECT_EQ(settings(), "{}");
  EXPECT_FALSE(fs::exists(bridge.scriptURL()));
  EXPECT_FALSE(bridge.isConnected());
}

TEST_F(ClaudeUsageBridgeTest, OtherSettingsComeBackAsTheyWere) {
  const std::string before = R"({
  "a/b" : "1/2",
  "env" : {
    "N" : 12345678901234567890123
  },
  "statusLine" : {
    "command" : "mine --colour\nREFRESH='7'",
    "padding" : 0,
    "refreshInterval" : 10,
    "type" : "command"
  }
})";
  put(bridge.settingsURL(), JSONValue::parse(before).prettyPrinted());
  const auto original = settings();
  ::chmod(bridge.settingsURL().c_str(), 0640);
  bridge.connect();
  EXPECT_EQ(contents(backup()), original);
  auto changed = JSONValue::parse(settings());
  EXPECT_EQ(*changed.member("env"), *JSONValue::parse(before).member("env"));
  EXPECT_NE(settings().find("\"1/2\""), std::string::npos) << "slashes are not escaped";
  EXPECT_NE(contents(bridge.scriptURL()).find("PREVIOUS='mine --colour"), std::string::npos);
  bridge.connect();
  bridge.disconnect();
  EXPECT_EQ(settings(), original);
  struct stat info {};
  ::stat(bridge.settingsURL().c_str(), &info);
  EXPECT_EQ(info.st_mode & 0777, 0640U);
}

TEST_F(ClaudeUsageBridgeTest, AnyPreviousCommandKeepsOutputAndStatus) {
  const char* commands[] = {
      "cat",
      "echo it\\'s; exit 3",
      "printf '%s' \"$(wc -c)\"; false",
      "echo 'single' \"double\" \\\\ '\"' \"'\" `echo tick` $((1+1)) $0",
      "line=one\necho \"$line\"\n\n# the end\nprintf 'no newline'",
      "echo $HOME '$HOME' $#x; exit 255",
      "head -c 5",
      "exit 7",
      "no-such-command-here --x",
      "PREVIOUS=1; PAYLOAD=2; echo \"'PREVIOUS='\"",
      "'",
      "kill -TERM $$",
      "exec 2>&1; cat nowhere; exit 2",
      "cat; printf '\\n%s\\n\\n' end",
      "echo größer → 日本; echo '\n'",
  };
  for (const std::string& command :
       std::vector<std::string>(std::begin(commands), std::end(commands))) {
    setCommand(command);
    bridge.connect();
    bridge.connect(); // twice never chains the script to itself
    const auto expected = run("sh -c " + shellQuoted(command));
    for (const char* shell : {"dash", "bash", "bash --posix", "busybox sh", "ksh", "zsh"})
      if (run(std::string("command -v ") + shell).status == 0) {
        EXPECT_EQ(run(std::string(shell) + " " + bridge.scriptURL().string()), expected)
            << shell << ": " << command;
      }
    EXPECT_EQ(run(bridge.scriptURL().string()), expected) << command;
    EXPECT_EQ(contents(bridge.payloadURL()), payload);
    bridge.disconnect();
    EXPECT_EQ(this->command(), command);
  }
}

TEST_F(ClaudeUsageBridgeTest, LongPayloadsReachCommandsThatReadThemAndThoseThatDoNot) {
  const std::string longPayload = R"({"note":")" + std::string(300'000, 'x') + R"("})";
  for (const std::string command : {"cat", "exit 7", "head -c 3; exit 1", "wc -c"}) {
    setCommand(command);
    bridge.connect();
    for (const std::string shell : {"dash", "bash", "busybox sh"})
      if (run("command -v " + shell).status == 0) {
        EXPECT_EQ(run(shell + " " + bridge.scriptURL().string(), longPayload),
                  run("sh -c " + shellQuoted(command), longPayload))
            << shell << ": " << command;
      }
    EXPECT_EQ(contents(bridge.payloadURL()), longPayload);
    bridge.disconnect();
  }
}

TEST_F(ClaudeUsageBridgeTest, AnEmptyPayloadReplacesNone) {
  bridge.connect();
  run(bridge.scriptURL().string());
  run(bridge.scriptURL().string(), "");
  EXPECT_EQ(contents(bridge.payloadURL()), payload);
}

TEST_F(ClaudeUsageBridgeTest, SessionsAtOnceLeaveAWholePayload) {
  setCommand("true");
  bridge.connect();
  const std::string script = bridge.scriptURL().string();
  // Each hands over a letter of its own, and as much of it as takes several writes.
  run(fmt::format("for letter in a b c d e f g h; do (for round in 1 2 3 4 5; do "
                  "head -c 400000 /dev/zero | tr '\\0' $letter | {}; done) & done; wait",
                  script));
  const auto kept = contents(bridge.payloadURL());
  EXPECT_EQ(kept, std::string(400'000, kept.empty() ? ' ' : kept[0]));
  for (const auto& entry : fs::directory_iterator(bridge.payloadURL().parent_path()))
    EXPECT_NE(entry.path().extension(), ".tmp") << "left behind";
}

TEST_F(ClaudeUsageBridgeTest, ThePlainLineTakesAnyNumber) {
  bridge.connect();
  for (const char* used : {"NaN", "Infinity", "-Infinity", "1e999", "true", "\"12\"", "[]"})
    for (const char* resets : {"99999999999", "NaN", "1e999", "null"}) {
      const auto five = fmt::format(R"({{"used_percentage":{},"resets_at":{}}})", used, resets);
      EXPECT_EQ(
          run(bridge.scriptURL().string(),
              fmt::format(R"({{"model":{{"display_name":"M"}},"rate_limits":{{"five_hour":{}}}}})",
                          five)),
          (Outcome{"M\n", 0}))
          << five;
    }
  EXPECT_EQ(run(bridge.scriptURL().string(),
                R"({"rate_limits":{"five_hour":{"used_percentage":8.6,"resets_at":NaN}}})"),
            (Outcome{"9%\n", 0}));
  EXPECT_EQ(run(bridge.scriptURL().string(), std::string(100'000, '[')), (Outcome{"\n", 0}));
}

TEST_F(ClaudeUsageBridgeTest, AScriptWrappedByHandIsNotChainedToItself) {
  setCommand("echo mine");
  bridge.connect();
  setCommand("sh " + bridge.scriptURL().string() + " | cat");
  EXPECT_FALSE(bridge.isConnected());
  bridge.connect();
  EXPECT_EQ(run(command()), (Outcome{"mine\n", 0}));
  bridge.disconnect();
  EXPECT_EQ(command(), "echo mine");
}

TEST_F(ClaudeUsageBridgeTest, SettingsThatAreALinkStayOne) {
  fs::create_directory(folder / "dotfiles");
  put(folder / "dotfiles/settings.json", "{}");
  fs::create_symlink(folder / "dotfiles/settings.json", bridge.settingsURL());
  bridge.connect();
  EXPECT_TRUE(fs::is_symlink(bridge.settingsURL()));
  EXPECT_NE(contents(folder / "dotfiles/settings.json").find("statusLine"), std::string::npos);
}

TEST_F(ClaudeUsageBridgeTest, DrawsALineOfItsOwn) {
  bridge.connect();
  const auto script = bridge.scriptURL().string();
  const std::pair<std::string, std::string> cases[] = {
      {R"({"model":{"display_name":"Opus"}})", "Opus\n"},
      {R"({"model":{"display_name":"Opus"},"workspace":{"current_dir":"/srv/app/"},)"
       R"("rate_limits":{"five_hour":{"used_percentage":41.6,"resets_at":1}}})",
       "Opus · app · 42%\n"},
      {"[1]", "\n"},
      {"no JSON", "\n"},
      {R"({"model":5,"rate_limits":[],"workspace":{"current_dir":null}})", "\n"},
  };
  for (const auto& [input, line] : cases)
    EXPECT_EQ(run(script, input), (Outcome{line, 0})) << input;
  const auto later = fmt::format(R"({{"rate_limits":{{"five_hour":{{"used_percentage":5,)"
                                 R"("resets_at":{}}}}}}})",
                                 std::time(nullptr) + 2 * 3600 + 13 * 60 + 30);
  EXPECT_EQ(run("LC_ALL=C " + script, later), (Outcome{"5% · 2h 13m left\n", 0}));
  auto text = contents(script);
  for (std::size_t at = 0; (at = text.find("/usr/bin/python3", at)) != std::string::npos;)
    text.replace(at, 16, "/nowhere/python3");
  put(folder / "without", text);
  EXPECT_EQ(run("sh " + (folder / "without").string()), (Outcome{"", 0}));
}

TEST_F(ClaudeUsageBridgeTest, ThePayloadCannotBeWrittenAndTheLineStays) {
  setCommand("cat");
  bridge.connect();
  // Nothing can be made in what is no folder.
  const auto text = contents(bridge.scriptURL());
  const auto folderName = bridge.payloadURL().parent_path().string();
  put(folder / "elsewhere.sh", std::string(text).replace(text.find(folderName), folderName.size(),
                                                         (folder / "input").string()));
  EXPECT_EQ(run("sh " + (folder / "elsewhere.sh").string()), (Outcome{payload, 0}));
  EXPECT_FALSE(fs::exists(bridge.payloadURL()));
}

TEST_F(ClaudeUsageBridgeTest, AnotherToolsChangeStays) {
  setCommand("first");
  bridge.connect();
  setCommand("another tool");
  const auto before = settings();
  EXPECT_FALSE(bridge.isConnected());
  EXPECT_EQ(errorOf<BridgeError>([&] { bridge.disconnect(); }),
            "Failed to disconnect because the status line is not Tavrin's.");
  EXPECT_EQ(settings(), before);
  EXPECT_TRUE(fs::exists(bridge.scriptURL()));
  bridge.connect();
  bridge.disconnect();
  EXPECT_EQ(command(), "another tool");
}

TEST_F(ClaudeUsageBridgeTest, WhatCannotBeReadOrWrittenStaysAsItIs) {
  for (const std::string& invalid : std::vector<std::string>{"", "{", "[]", "{\"a\":1}}", "\xff"}) {
    put(bridge.settingsURL(), invalid);
    for (const auto& act : {&ClaudeUsageBridge::connect, &ClaudeUsageBridge::disconnect})
      EXPECT_EQ(errorOf<BridgeError>([&] { (bridge.*act)(); }),
                "Failed to read ~/.claude/settings.json because it is not valid JSON.");
    EXPECT_EQ(settings(), invalid);
  }
  EXPECT_FALSE(fs::exists(bridge.scriptURL()));

  // A place that nobody may write to, root included.
  fs::remove_all(folder / ".claude");
  fs::create_directory_symlink("/proc/self", folder / ".claude");
  EXPECT_NE(errorOf<FileError>([&] { bridge.connect(); }), "");
  EXPECT_FALSE(bridge.isConnected());

  fs::remove(folder / ".claude");
  EXPECT_EQ(errorOf<BridgeError>([&] { bridge.connect(); }),
            "Failed to find ~/.claude because Claude Code has not run here.");
}

TEST_F(ClaudeUsageBridgeTest, ReadOnlySettingsAreReplacedWithTheirPermissions) {
  setCommand("mine");
  ::chmod(bridge.settingsURL().c_str(), 0400);
  bridge.connect();
  EXPECT_TRUE(bridge.isConnected());
  struct stat info {};
  ::stat(bridge.settingsURL().c_str(), &info);
  EXPECT_EQ(info.st_mode & 0777, 0400U);
  EXPECT_TRUE(fs::exists(backup()));
}

TEST_F(ClaudeUsageBridgeTest, PlacesThatAShellWouldTakeApart) {
  home.support = folder / "Application Support/it's";
  const ClaudeUsageBridge odd(home);
  odd.connect();
  odd.connect();
  EXPECT_TRUE(odd.isConnected());
  EXPECT_EQ(run(command(), R"({"model":{"display_name":"Opus"}})").output, "Opus\n");
  EXPECT_TRUE(odd.limits());
  odd.disconnect();
  EXPECT_EQ(settings(), "{}");
  home.support.reset();
  EXPECT_EQ(ClaudeUsageBridge(home).payloadURL(), folder.path() / "Tavrin/claude-usage.json");
}

TEST_F(ClaudeUsageBridgeTest, LimitsOutOfThePayload) {
  EXPECT_FALSE(bridge.limits());
  bridge.connect();
  run(bridge.scriptURL().string());
  const auto limits = bridge.limits();
  ASSERT_TRUE(limits);
  EXPECT_EQ(limits->fiveHour, (ClaudeUsageWindow{41.6, Date::fromUnixSeconds(99999999999.0)}));
  EXPECT_EQ(limits->sevenDay, (ClaudeUsageWindow{7, {}}));
  EXPECT_EQ(limits->subscriptionType, "max");
  EXPECT_NEAR(limits->readAt.unixSeconds(), static_cast<double>(std::time(nullptr)), 5);
  put(bridge.payloadURL(), "{\"rate_limits\":");
  EXPECT_FALSE(bridge.limits());
  put(bridge.payloadURL(), "{\"rate_limits\":{\"five_hour\":{\"resets_at\":5}}}");
  EXPECT_EQ(bridge.limits()->fiveHour, std::nullopt);
}

TEST(ClaudeUsageLimitsFormatTest, UntilReset) {
  const Date now{1000};
  const std::pair<double, std::optional<std::string>> cases[] = {
      {0, std::nullopt}, {-5, std::nullopt},  {20, "1m"},        {3599, "59m"},     {3600, "1h 0m"},
      {7980, "2h 13m"},  {86'399, "23h 59m"}, {86'400, "1d 0h"}, {273'600, "3d 4h"}};
  for (const auto& [seconds, text] : cases)
    EXPECT_EQ(ClaudeUsageLimitsFormat::untilReset(now + seconds, now), text) << seconds;
  EXPECT_EQ(ClaudeUsageLimitsFormat::untilReset({}, now), std::nullopt);
}

} // namespace
} // namespace tavrin
