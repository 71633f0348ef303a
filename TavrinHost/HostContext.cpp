#include "TavrinHost/HostContext.h"

#include "TavrinCore/Base/Errors.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>

namespace tavrin {

void HostContext::addJSONFlag(CLI::App& command) {
  command.add_flag("--json", printsJSON_, "Print JSON, for scripts");
}

void HostContext::print(const JSONValue& value) {
  console_.out << value.prettyPrinted() << '\n';
}

void HostContext::say(std::string_view line) {
  console_.out << line << '\n';
}

void HostContext::remark(std::string_view line) {
  console_.err << line << '\n';
}

void HostContext::remarkOnce(const std::string& line) {
  if (remarks_.insert(line).second)
    remark(line);
}

void HostContext::examples(CLI::App& command,
                           const std::vector<std::pair<std::string, std::string>>& lines) {
  std::size_t width = 0;
  for (const auto& [line, unused] : lines)
    width = std::max(width, line.size());
  std::string text = "\nExamples:\n";
  for (const auto& [line, meaning] : lines)
    text += width > 44 ? fmt::format("  {}\n      {}\n", line, meaning)
                       : fmt::format("  {:<{}}  {}\n", line, width, meaning);
  text.pop_back();
  command.footer(text);
}

void HostContext::complete(const CLI::Option* argument, Completer completer) {
  completers_[argument] = std::move(completer);
}

const Completer* HostContext::completer(const CLI::Option* argument) const {
  const auto found = completers_.find(argument);
  return found == completers_.end() ? nullptr : &found->second;
}

std::filesystem::path HostContext::stateFolder() {
  auto& files = platform_.fileManager();
  const auto chosen = files.environment("XDG_STATE_HOME");
  const bool isChosen = chosen && chosen->starts_with('/');
  const auto folder =
      (isChosen ? std::filesystem::path(*chosen) : files.homeFolder() / ".local/state") / "tavrin";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw FileError(
        failure(fmt::format("make the folder \"{}\"", folder.string()), error.message()));
  return folder;
}

} // namespace tavrin
