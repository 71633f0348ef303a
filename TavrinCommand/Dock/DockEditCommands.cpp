#include "TavrinCommand/Dock/DockCommands.h"

#include "TavrinCommand/Base/Completers.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockItems.h"
#include "TavrinHost/Dock/DockLibrary.h"

#include <CLI/App.hpp>
#include <fmt/format.h>

namespace tavrin {
namespace {

const std::map<std::string, DockSection> sections = {{"apps", DockSection::apps},
                                                     {"others", DockSection::others}};
const std::map<std::string, FolderOptions::Arrangement> arrangements = {
    {"name", FolderOptions::Arrangement::name},
    {"added", FolderOptions::Arrangement::dateAdded},
    {"modified", FolderOptions::Arrangement::dateModified},
    {"created", FolderOptions::Arrangement::dateCreated},
    {"kind", FolderOptions::Arrangement::kind}};
const std::map<std::string, FolderOptions::Display> displays = {
    {"stack", FolderOptions::Display::stack}, {"folder", FolderOptions::Display::folder}};
const std::map<std::string, FolderOptions::View> views = {{"auto", FolderOptions::View::automatic},
                                                          {"fan", FolderOptions::View::fan},
                                                          {"grid", FolderOptions::View::grid},
                                                          {"list", FolderOptions::View::list}};
const std::map<std::string, SpacerVariant> spacers = {{"default", SpacerVariant::standard},
                                                      {"small", SpacerVariant::small},
                                                      {"flex", SpacerVariant::flex}};

/// An option that takes one of some words.
template <class E> class Choice {
public:
  void addTo(CLI::App& command, CommandContext& context, const std::string& option,
             const std::string& description, const std::map<std::string, E>& words) {
    words_ = &words;
    std::vector<std::string> allowed;
    std::vector<Suggestion> offered;
    for (const auto& [word, unused] : words) {
      allowed.push_back(word);
      offered.push_back({word});
    }
    auto* added =
        command.add_option(option, text_, description)->check(CLI::IsMember(std::move(allowed)));
    context.complete(added, [offered](const auto&, auto) { return offered; });
  }
  std::optional<E> value() const {
    return text_.empty() ? std::nullopt : std::optional(words_->at(text_));
  }

private:
  std::string text_;
  const std::map<std::string, E>* words_ = nullptr;
};

/// `--section`, `--position`, `--before` and `--after`.
class PlaceOptions {
public:
  void addTo(CLI::App& command, CommandContext& context) {
    section_.addTo(command, context, "--section",
                   translated("The side of the Dock: apps or others"), sections);
    auto* position =
        command.add_option("--position", position_, translated("first, last or a number from 1"));
    auto* before = command.add_option("--before", before_, translated("Before this item"));
    auto* after = command.add_option("--after", after_, translated("After this item"));
    before->excludes(position);
    after->excludes(position)->excludes(before);
    for (auto* option : {before, after})
      context.complete(option, completeDockItems(context));
  }
  std::optional<DockSection> section() const { return section_.value(); }
  std::optional<DockPlace> place() const {
    if (!before_.empty())
      return DockPlace{DockPlace::Beside{before_, false}};
    if (!after_.empty())
      return DockPlace{DockPlace::Beside{after_, true}};
    return position_.empty() ? std::nullopt : std::optional(DockPlace::parse(position_));
  }

private:
  Choice<DockSection> section_;
  std::string position_;
  std::string before_;
  std::string after_;
};

std::optional<std::string> given(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

struct AddOptions {
  std::vector<std::string> words;
  std::string label;
  std::string replacing;
  bool mayBeMissing = false;
  Choice<FolderOptions::Arrangement> arrangement;
  Choice<FolderOptions::Display> display;
  Choice<FolderOptions::View> view;
  PlaceOptions place;

  DockItem finished(DockItem item) const {
    return withLook(
        std::move(item),
        {.label = given(label), .folder = {arrangement.value(), display.value(), view.value()}});
  }
};

void addAdd(CLI::App& app, CommandContext& context, const std::function<void(CLI::App&)>& decorate,
            const std::function<void(DockEdit)>& take) {
  auto* command =
      app.add_subcommand("add", translated("Add applications, files, folders and links"));
  auto options = std::make_shared<AddOptions>();
  command->add_option("ITEM", options->words, translated("A path or an address"))->required();
  command->add_option("--label", options->label, translated("The name to show"));
  auto* replacing = command->add_option("--replacing", options->replacing,
                                        translated("Take this item's place, if it is there"));
  context.complete(replacing, completeDockItems(context));
  options->place.addTo(*command, context);
  options->arrangement.addTo(*command, context, "--sort", translated("How a folder is sorted"),
                             arrangements);
  options->display.addTo(*command, context, "--display", translated("How a folder's tile looks"),
                         displays);
  options->view.addTo(*command, context, "--view", translated("How a folder opens"), views);
  command->add_flag("--allow-missing", options->mayBeMissing,
                    translated("Add paths that do not exist on this machine"));
  decorate(*command);
  CommandContext::examples(
      *command,
      {{"tavrin dock add /Applications/Mail.app --before Safari", translated("at a place")},
       {"tavrin dock add ~/Downloads --view fan --sort added", translated("a folder")},
       {"tavrin dock add https://example.org --label Example", translated("a link")},
       {"tavrin dock add /Applications/New.app --replacing Old --file user.plist",
        translated("another Dock")}});
  command->callback([options, &context, take, command] {
    if (!options->label.empty() && options->words.size() > 1)
      throw HostError(ExitCode::usage,
                      translated("--label names one item, and several were given"));
    const auto* files = command->get_option_no_throw("--file");
    const bool isElsewhere = files != nullptr && files->count() > 0;
    DockAddition addition{
        {}, options->place.section(), options->place.place(), given(options->replacing)};
    for (const auto& word : options->words)
      addition.items.push_back(
          options->finished(itemNamed(context, word, options->mayBeMissing || isElsewhere)));
    take(adding(std::move(addition), [&context](const DockItem& item) {
      context.remarkOnce(
          translated("\"{displayName}\" is in the Dock already; --replacing puts it there anew",
                     {{"displayName", printable(item.displayName())}}));
    }));
  });
}

struct SelectOptions {
  DockSelection selection;
  Choice<DockSection> section;
};

void addRemove(CLI::App& app, CommandContext& context,
               const std::function<void(CLI::App&)>& decorate,
               const std::function<void(DockEdit)>& take) {
  auto* command = app.add_subcommand("remove", translated("Remove items"));
  auto options = std::make_shared<SelectOptions>();
  auto& selection = options->selection;
  auto* items = command->add_option("ITEM", selection.references,
                                    translated("A label, path, bundle identifier or address"));
  context.complete(items, completeDockItems(context));
  command->add_flag("--spacers", selection.allSpacers, translated("All spacers"));
  command->add_flag("--all", selection.everything, translated("Everything"));
  command->add_flag("--every", selection.everyMatch,
                    translated("All items that go by a name, not just one"));
  options->section.addTo(*command, context, "--section", translated("Only on this side"), sections);
  decorate(*command);
  CommandContext::examples(
      *command, {{"tavrin dock remove Mail com.example.Notes", translated("two items")},
                 {"tavrin dock remove --spacers --dry-run", translated("see what would go")}});
  command->callback([options, take] {
    auto wanted = options->selection;
    wanted.section = options->section.value();
    if (wanted.references.empty() && !wanted.allSpacers && !wanted.everything)
      throw HostError(ExitCode::usage, translated("name an item, or give --spacers or --all"));
    take(removing(std::move(wanted)));
  });
}

void addMove(CLI::App& app, CommandContext& context, const std::function<void(CLI::App&)>& decorate,
             const std::function<void(DockEdit)>& take) {
  auto* command = app.add_subcommand("move", translated("Move items"));
  auto references = std::make_shared<std::vector<std::string>>();
  auto place = std::make_shared<PlaceOptions>();
  auto* items = command->add_option("ITEM", *references,
                                    translated("A label, path, bundle identifier or address"));
  items->required();
  context.complete(items, completeDockItems(context));
  place->addTo(*command, context);
  decorate(*command);
  CommandContext::examples(
      *command, {{"tavrin dock move Mail --position first", translated("to the left end")},
                 {"tavrin dock move Notes --after Mail", translated("beside another")}});
  command->callback([references, place, take] {
    const auto where = place->place();
    if (!where && !place->section())
      throw HostError(ExitCode::usage,
                      translated("say where to: --position, --before, --after or --section"));
    take(moving({.references = *references, .section = {}}, place->section(),
                where.value_or(DockPlace{})));
  });
}

void addSpacer(CLI::App& app, CommandContext& context,
               const std::function<void(CLI::App&)>& decorate,
               const std::function<void(DockEdit)>& take) {
  auto* command = app.add_subcommand("spacer", translated("Add a spacer"));
  auto variant = std::make_shared<Choice<SpacerVariant>>();
  auto place = std::make_shared<PlaceOptions>();
  variant->addTo(*command, context, "--size", translated("default, small or flex"), spacers);
  place->addTo(*command, context);
  decorate(*command);
  CommandContext::examples(
      *command, {{"tavrin dock spacer --size small --after Mail", translated("a narrow one")}});
  command->callback([variant, place, take] {
    take(adding({{DockItem{variant->value().value_or(SpacerVariant::standard)}},
                 place->section(),
                 place->place(),
                 std::nullopt},
                [](const DockItem&) {}));
  });
}

} // namespace

void addDockEditCommands(CLI::App& app, CommandContext& context,
                         const std::function<void(CLI::App&)>& decorate,
                         const std::function<void(DockEdit)>& take) {
  addAdd(app, context, decorate, take);
  addRemove(app, context, decorate, take);
  addMove(app, context, decorate, take);
  addSpacer(app, context, decorate, take);
}

} // namespace tavrin
