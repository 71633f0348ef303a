#pragma once

#include "TavrinCommand/Base/Console.h"
#include "TavrinCore/Base/JSONValue.h"
#include "TavrinHost/HostContext.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tavrin {

/// One word that the shell may offer, and what it stands for.
struct Suggestion {
  std::string word;
  std::string meaning = {};
};

/// Offers words for an argument. `words` are those given to the command before the one that is
/// being completed, options left out.
using Completer = std::function<std::vector<Suggestion>(const std::vector<std::string>& words,
                                                        std::string_view current)>;

/// What every group of commands gets: the host's context, the console and the habits they share.
///
/// A group lives in a file of its own with one function
///
///     void addClockCommands(CLI::App& app, CommandContext& context);
///
/// that adds its subcommands, each with a description, `examples`, and a callback that does the
/// work or throws a HostError. It is listed in Program.cpp and described in Packaging/tavrin.1.
class CommandContext : public HostContext {
public:
  CommandContext(CommandPlatform& platform, Console& console)
      : HostContext(platform), console_(console) {}

  Console& console() { return console_; }

  /// Whether `--json` was given to the command that runs.
  bool printsJSON() const { return printsJSON_; }
  void addJSONFlag(CLI::App& command);
  void print(const JSONValue& value);
  /// A line of the result.
  void say(std::string_view line) override;
  /// To the error stream.
  void remark(std::string_view line) override;

  /// Puts worked examples under a command's help: a command line and what it does.
  static void examples(CLI::App& command,
                       const std::vector<std::pair<std::string, std::string>>& lines);

  void complete(const CLI::Option* argument, Completer completer);
  const Completer* completer(const CLI::Option* argument) const;

private:
  Console& console_;
  bool printsJSON_ = false;
  std::map<const CLI::Option*, Completer> completers_;
};

} // namespace tavrin
