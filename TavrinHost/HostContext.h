#pragma once

#include "TavrinCore/Base/JSONValue.h"
#include "TavrinHost/Console.h"
#include "TavrinHost/HostError.h"
#include "TavrinPlatform/CommandPlatform.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

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

/// What every group of commands gets: the platform, the console and the habits they share.
///
/// A group lives in a file of its own with one function
///
///     void addClockCommands(CLI::App& app, HostContext& context);
///
/// that adds its subcommands, each with a description, `examples`, and a callback that does the
/// work or throws a HostError. It is listed in Program.cpp and described in Packaging/tavrin.1.
class HostContext {
public:
  HostContext(CommandPlatform& platform, Console& console)
      : platform_(platform), console_(console) {}

  CommandPlatform& platform() { return platform_; }
  Console& console() { return console_; }

  /// Whether `--json` was given to the command that runs.
  bool printsJSON() const { return printsJSON_; }
  void addJSONFlag(CLI::App& command);
  void print(const JSONValue& value);
  void say(std::string_view line);
  /// A remark that is no result: to the error stream.
  void remark(std::string_view line);
  /// The same, once for a command, however often the matter comes up.
  void remarkOnce(const std::string& line);

  /// Puts worked examples under a command's help: a command line and what it does.
  static void examples(CLI::App& command,
                       const std::vector<std::pair<std::string, std::string>>& lines);

  void complete(const CLI::Option* argument, Completer completer);
  const Completer* completer(const CLI::Option* argument) const;

  /// Where logs and the like go; made when missing. Throws FileError.
  std::filesystem::path stateFolder();

private:
  CommandPlatform& platform_;
  Console& console_;
  bool printsJSON_ = false;
  std::map<const CLI::Option*, Completer> completers_;
  std::set<std::string> remarks_;
};

} // namespace tavrin
