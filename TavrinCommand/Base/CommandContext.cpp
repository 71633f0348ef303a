#include "TavrinCommand/Base/CommandContext.h"
#include "TavrinCore/Text/Texts.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <ostream>

namespace tavrin {

void CommandContext::addJSONFlag(CLI::App& command) {
  command.add_flag("--json", printsJSON_, translated("Print JSON, for scripts"));
}

void CommandContext::print(const JSONValue& value) {
  console_.out << value.prettyPrinted() << '\n';
}

void CommandContext::say(std::string_view line) {
  console_.out << line << std::endl;
}

void CommandContext::remark(std::string_view line) {
  console_.err << line << '\n';
}

void CommandContext::examples(CLI::App& command,
                              const std::vector<std::pair<std::string, std::string>>& lines) {
  std::size_t width = 0;
  for (const auto& [line, unused] : lines)
    width = std::max(width, line.size());
  std::string text = "\n" + translated("Examples:") + "\n";
  for (const auto& [line, meaning] : lines)
    text += width > 44 ? fmt::format("  {}\n      {}\n", line, meaning)
                       : fmt::format("  {:<{}}  {}\n", line, width, meaning);
  text.pop_back();
  command.footer(text);
}

void CommandContext::complete(const CLI::Option* argument, Completer completer) {
  completers_[argument] = std::move(completer);
}

const Completer* CommandContext::completer(const CLI::Option* argument) const {
  const auto found = completers_.find(argument);
  return found == completers_.end() ? nullptr : &found->second;
}

} // namespace tavrin
