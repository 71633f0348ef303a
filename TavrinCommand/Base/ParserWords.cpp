#include "TavrinCommand/Base/ParserWords.h"

#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Texts.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <optional>
#include <vector>

namespace tavrin {
namespace {

using Parts = std::vector<std::string>;

/// What stands in `text` where the pattern has "*"; no value where it does not match. The last of
/// several places that fit is taken: what a user typed may hold anything, and stands first.
std::optional<Parts> matched(std::string_view text, std::string_view pattern) {
  const auto star = pattern.find('*');
  if (star == std::string_view::npos)
    return text == pattern ? std::optional(Parts()) : std::nullopt;
  if (!text.starts_with(pattern.substr(0, star)))
    return std::nullopt;
  text.remove_prefix(star);
  pattern.remove_prefix(star + 1);
  const auto next = pattern.substr(0, pattern.find('*'));
  for (auto at = next.empty() ? text.size() : text.find(next); at != std::string_view::npos;
       at = next.empty() ? at : text.find(next, at + 1)) {
    if (auto rest = matched(text.substr(at), pattern)) {
      rest->insert(rest->begin(), std::string(text.substr(0, at)));
      return rest;
    }
    if (next.empty())
      return std::nullopt;
  }
  return std::nullopt;
}

/// "0.200000" as "0.2".
std::string plainNumber(const std::string& text) {
  double value = 0;
  const auto [end, error] = doubleFromChars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    return text;
  return TextPlace("number", value).value();
}

/// A sentence of the library's, and the same in the user's language.
struct Complaint {
  const char* pattern;
  std::string (*sentence)(const Parts& parts);
};

std::string needsValue(const Parts& parts) {
  return translated("{name} needs a value", {{"name", parts[0]}});
}
std::string takesOne(const Parts& parts) {
  return translated("{name} takes one value", {{"name", parts[0]}});
}
std::string takesNone(const Parts& parts) {
  return translated("{name} takes no value", {{"name", parts[0]}});
}

constexpr Complaint complaints[] = {
    {"A subcommand is required",
     [](const Parts&) { return translated("A subcommand is required"); }},
    {"* is required",
     [](const Parts& parts) {
       return translated("{name} is required", {{"name", parts[0]}});
     }},
    {"*: Value * not in range * to *",
     [](const Parts& parts) {
       return translated("{name} must be {least} to {most}, not {value}",
                         {{"name", parts[0]},
                          {"value", parts[1]},
                          {"least", plainNumber(parts[2])},
                          {"most", plainNumber(parts[3])}});
     }},
    {"*: * not in {*}",
     [](const Parts& parts) {
       return translated("{name} must be one of {words}, not \"{value}\"",
                         {{"name", parts[0]}, {"value", parts[1]}, {"words", parts[2]}});
     }},
    {"Could not convert: * = *",
     [](const Parts& parts) {
       return translated("{name} must be a number, not \"{value}\"",
                         {{"name", parts[0]}, {"value", parts[1]}});
     }},
    {"* excludes *",
     [](const Parts& parts) {
       return translated("{name} and {other} do not go together",
                         {{"name", parts[0]}, {"other", parts[1]}});
     }},
    {"*: * required * missing", needsValue},
    {"*: At least * required but received *", needsValue},
    {"*: At Most * required but received *", takesOne},
    {"Expected exactly * arguments to *, got *",
     [](const Parts& parts) { return takesOne({parts[1]}); }},
    {"* was given a disallowed flag override", takesNone},
    {"*: too many inputs for a flag", takesNone},
    {"*: Should be true/false or a number", takesNone},
};

/// A validator's description stands behind the type's name: what is allowed without its words.
class HelpFormatter final : public CLI::Formatter {
public:
  std::string make_option_opts(const CLI::Option* option) const override {
    auto text = Formatter::make_option_opts(option);
    if (const auto at = text.find(" in ["); at != std::string::npos)
      text.erase(at, 3);
    return text;
  }
};

void translateGroups(CLI::App& app) {
  app.group(translated("Subcommands"));
  for (auto* option : app.get_options([](const CLI::Option*) { return true; }))
    if (option->get_group() == "Options")
      option->group(translated("Options"));
  for (auto* command : app.get_subcommands([](const CLI::App*) { return true; }))
    translateGroups(*command);
}

void setFormatter(CLI::App& app, const std::shared_ptr<CLI::Formatter>& formatter) {
  app.formatter(formatter);
  for (auto* command : app.get_subcommands([](const CLI::App*) { return true; }))
    setFormatter(*command, formatter);
}

} // namespace

void translateHelp(CLI::App& app) {
  const auto formatter = std::make_shared<HelpFormatter>();
  const std::pair<const char*, std::string> labels[] = {
      {"Usage", translated("Usage")},           {"Positionals", translated("Positionals")},
      {"REQUIRED", translated("REQUIRED")},     {"OPTIONS", translated("OPTIONS")},
      {"SUBCOMMAND", translated("SUBCOMMAND")}, {"SUBCOMMANDS", translated("SUBCOMMANDS")},
      {"Excludes", translated("Not with")}};
  for (const auto& [key, words] : labels)
    formatter->label(key, words);
  setFormatter(app, formatter);
  translateGroups(app);
}

std::string parserComplaint(const CLI::ParseError& error) {
  for (const auto& complaint : complaints)
    if (const auto parts = matched(error.what(), complaint.pattern))
      return complaint.sentence(*parts);
  return error.what();
}

} // namespace tavrin
