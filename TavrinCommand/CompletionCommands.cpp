#include "TavrinCommand/CompletionCommands.h"
#include "TavrinCore/Text/Texts.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <ostream>

namespace tavrin {
namespace {

constexpr std::string_view bashScript = R"sh(# tavrin completion for bash
_tavrin_unquoted() { # WORD as it was typed; gives REPLY, and QUOTE where one is still open
  local rest=$1 character
  REPLY= QUOTE=
  while [[ -n $rest ]]; do
    character=${rest:0:1} rest=${rest:1}
    case $QUOTE$character in
      "'" | '"') QUOTE=$character ;;
      "''" | '""') QUOTE= ;;
      '\' | '"\') REPLY+=${rest:0:1} rest=${rest:1} ;;
      *) REPLY+=$character ;;
    esac
  done
}
_tavrin() {
  local IFS=$'\n' i cur words=() line word reply=() REPLY QUOTE
  # Bash splits words at "="; a setting is one word here.
  for ((i = 1; i <= COMP_CWORD; i++)); do
    _tavrin_unquoted "${COMP_WORDS[i]}"
    if [[ ${COMP_WORDS[i]} == =* || ( $i -gt 1 && ${COMP_WORDS[i-1]} == "=" && -n ${COMP_WORDS[i]} ) ]] &&
       (( ${#words[@]} )); then
      words[${#words[@]}-1]+=$REPLY
    else
      words+=("$REPLY")
    fi
  done
  cur=${words[${#words[@]}-1]}
  while IFS= read -r line; do
    word=${line%%$'\t'*}
    [[ $cur == *=* ]] && word=${word#"${cur%%=*}="}
    case $word in
      *=) reply+=("$word") ;;
      # After a quote the word stands as it is; bash ends it.
      *) [[ -n $QUOTE ]] && reply+=("$word") || reply+=("$(printf %q "$word") ") ;;
    esac
  done < <(tavrin __complete "${words[@]}" 2>/dev/null)
  COMPREPLY=("${reply[@]}")
}
complete -o nospace -F _tavrin tavrin
)sh";

constexpr std::string_view zshScript = R"sh(#compdef tavrin
_tavrin() {
  local line word
  local -a plain open plainTexts openTexts
  while IFS= read -r line; do
    word=${line%%$'\t'*}
    if [[ $word == *= ]]; then
      open+=("$word"); openTexts+=("${line/$'\t'/  -- }")
    else
      plain+=("$word"); plainTexts+=("${line/$'\t'/  -- }")
    fi
  done < <(tavrin __complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)
  (( ${#plain} )) && compadd -U -l -d plainTexts -a plain
  (( ${#open} )) && compadd -U -l -S '' -d openTexts -a open
}
if [[ ${funcstack[1]} == _tavrin ]]; then _tavrin "$@"; else compdef _tavrin tavrin; fi
)sh";

constexpr std::string_view fishScript = R"sh(# tavrin completion for fish
function __tavrin_complete
    set -l words (commandline -opc)
    # A quote may still be open.
    set -l current (commandline -ct | string replace -r '^[\'"]' '' | string unescape)
    tavrin __complete $words[2..-1] "$current" 2>/dev/null
end
complete -c tavrin -f -a '(__tavrin_complete)'
)sh";

bool beginsAs(std::string_view word, std::string_view start) {
  return word.size() >= start.size() &&
         std::equal(start.begin(), start.end(), word.begin(), [](unsigned char a, unsigned char b) {
           return std::tolower(a) == std::tolower(b);
         });
}

bool isHidden(const CLI::App& command) {
  return command.get_group().empty();
}

const CLI::App* subcommand(const CLI::App& command, const std::string& name) {
  for (const auto* candidate : command.get_subcommands([](const CLI::App*) { return true; }))
    if (candidate->check_name(name))
      return candidate;
  return nullptr;
}

const CLI::Option* optionNamed(const CLI::App& command, const std::string& name) {
  for (const auto* option : command.get_options())
    if (!option->get_positional() && option->check_name(name))
      return option;
  return nullptr;
}

/// The argument that stands at a place; the last one takes all further places when it is a list.
const CLI::Option* positional(const CLI::App& command, std::size_t place) {
  const CLI::Option* last = nullptr;
  for (const auto* option : command.get_options()) {
    if (!option->get_positional())
      continue;
    if (place == 0)
      return option;
    --place;
    last = option;
  }
  return last != nullptr && last->get_items_expected_max() > 1 ? last : nullptr;
}

/// Where the cursor stands on the command line.
struct Place {
  const CLI::App* command;
  /// The words given to the command, options left out.
  std::vector<std::string> arguments = {};
  /// The option whose value comes next.
  const CLI::Option* option = nullptr;
};

Place placeAfter(const CLI::App& app, const std::vector<std::string>& words) {
  Place place{&app};
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i].starts_with("-")) {
      const auto* option = optionNamed(*place.command, words[i]);
      place.option = option != nullptr && option->get_items_expected_max() > 0 ? option : nullptr;
    } else if (place.option != nullptr) {
      if (place.option->get_items_expected_max() <= 1)
        place.option = nullptr;
    } else if (const auto* next = subcommand(*place.command, words[i])) {
      place = {next};
    } else {
      place.arguments.push_back(words[i]);
    }
  }
  return place;
}

std::vector<Suggestion> optionNames(const CLI::App& command) {
  std::vector<Suggestion> found;
  for (const auto* option : command.get_options())
    for (const auto& name : option->get_lnames())
      if (!option->get_group().empty())
        found.push_back({"--" + name, option->get_description()});
  return found;
}

std::vector<Suggestion> commandNames(const CLI::App& command) {
  std::vector<Suggestion> found;
  for (const auto* candidate : command.get_subcommands([](const CLI::App*) { return true; }))
    if (!isHidden(*candidate))
      found.push_back({candidate->get_name(), candidate->get_description()});
  return found;
}

} // namespace

void printSuggestions(const CLI::App& app, CommandContext& context,
                      const std::vector<std::string>& words) {
  for (const auto& one : suggestions(app, context, words))
    context.console().out << fmt::format("{}\t{}\n", printable(one.word), printable(one.meaning));
}

std::vector<Suggestion> suggestions(const CLI::App& app, const CommandContext& context,
                                    const std::vector<std::string>& words) {
  const std::string current = words.empty() ? "" : words.back();
  const Place place = placeAfter(app, words);
  std::vector<Suggestion> found;
  if (current.starts_with("-")) {
    found = optionNames(*place.command);
  } else {
    if (place.option == nullptr && place.arguments.empty())
      found = commandNames(*place.command);
    const auto* argument =
        place.option != nullptr ? place.option : positional(*place.command, place.arguments.size());
    if (const auto* completer = argument == nullptr ? nullptr : context.completer(argument))
      for (auto& suggestion : (*completer)(place.arguments, current))
        found.push_back(std::move(suggestion));
  }
  std::erase_if(found, [&](const Suggestion& one) { return !beginsAs(one.word, current); });
  return found;
}

void addCompletionCommands(CLI::App& app, CommandContext& context) {
  auto* completion =
      app.add_subcommand("completion", translated("Print the completion script of a shell"));
  auto shell = std::make_shared<std::string>();
  auto* argument = completion->add_option("SHELL", *shell, translated("bash, zsh or fish"))
                       ->required()
                       ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  context.complete(argument, [](const auto&, auto) {
    return std::vector<Suggestion>{{"bash"}, {"zsh"}, {"fish"}};
  });
  CommandContext::examples(*completion,
                           {{"source <(tavrin completion bash)", translated("for this shell")},
                            {"tavrin completion fish > ~/.config/fish/completions/tavrin.fish",
                             translated("for every fish to come")}});
  completion->callback([shell, &context] {
    context.console().out << (*shell == "bash"  ? bashScript
                              : *shell == "zsh" ? zshScript
                                                : fishScript);
  });
}

} // namespace tavrin
