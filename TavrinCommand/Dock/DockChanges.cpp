#include "TavrinCommand/Dock/DockChanges.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/NamedReference.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <istream>
#include <iterator>
#include <map>

namespace tavrin {
namespace {

/// One Dock on its way from one state to another.
struct DockChange {
  /// Empty for the user's own Dock.
  std::filesystem::path file;
  std::shared_ptr<DockPreferencesBackend> backend;
  DockSnapshot before;
  DockSnapshot after;
  bool isWritten = false;

  bool isNeeded() const { return before.apps != after.apps || before.others != after.others; }

  /// Reads the Dock and works out what the edits make of it.
  void plan(const std::vector<DockEdit>& edits, Date now) {
    before = DockPlistReader{backend}.read(now);
    after = before;
    for (const auto& edit : edits)
      edit(after);
  }
};

void report(CommandContext& context, const std::vector<DockChange>& changes) {
  JSONValue::Array list;
  for (const auto& change : changes) {
    const auto difference = DockChangeDetector::diff(change.before, change.after);
    if (context.printsJSON()) {
      auto json = changesJSON(difference);
      json.object()->emplace("file", change.backend->url().string());
      json.object()->emplace("changed", change.isNeeded());
      json.object()->emplace("written", change.isWritten);
      list.push_back(std::move(json));
      continue;
    }
    if (!change.file.empty())
      context.say(change.file.string() + ":");
    if (!change.isNeeded())
      context.say(translated("Nothing to change"));
    else if (!difference.hasChanges())
      context.say(translated("* labels or options of items"));
    else
      sayChanges(context, difference);
  }
  if (context.printsJSON())
    context.print(list);
}

/// The user's own Dock. Where somebody else has written it since, the edits are not made twice.
void changeOwnDock(DockLibrary& library, DockChange& change, const std::vector<DockEdit>& edits,
                   Date now) {
  change.plan(edits, now);
  if (!change.isNeeded())
    return;
  change.isWritten = library.change([&]() -> std::optional<DockSnapshot> {
    if (change.isWritten && DockChangeDetector::holds(DockPlistReader{change.backend}.read(now),
                                                      change.before, change.after))
      return std::nullopt;
    change.plan(edits, now);
    change.isWritten = change.isNeeded();
    return change.isWritten ? std::optional(change.after) : std::nullopt;
  });
}

/// Keeps others out of all Docks, in the order of their paths: two commands that want the same ones
/// do not wait for each other.
std::vector<std::shared_ptr<void>> exclusiveAccess(const std::vector<DockChange>& changes) {
  std::map<std::filesystem::path, DockPreferencesBackend*> backends;
  for (const auto& change : changes) {
    std::error_code error;
    backends[std::filesystem::weakly_canonical(change.file, error)] = change.backend.get();
  }
  std::vector<std::shared_ptr<void>> access;
  for (const auto& [unused, backend] : backends)
    access.push_back(backend->exclusiveAccess());
  return access;
}

/// All Docks are planned before the first is written, and nobody else writes them meanwhile. A
/// failure leaves those before it written, and says so.
void changeFiles(CommandContext& context, std::vector<DockChange>& changes,
                 const std::vector<DockEdit>& edits, Date now) {
  const auto access = exclusiveAccess(changes);
  for (auto& change : changes)
    change.plan(edits, now);
  for (auto change = changes.begin(); change != changes.end(); ++change) {
    if (!change->isNeeded())
      continue;
    try {
      DockPlistWriter{change->backend}.write(change->after);
    } catch (...) {
      if (change != changes.begin())
        report(context, {changes.begin(), change});
      throw;
    }
    change->isWritten = true;
  }
}

/// The same in every language.
std::string labelOf(const DockItem& item) {
  return item.spacer() != nullptr ? spacerName(*item.spacer()) : item.displayName();
}

JSONValue::Array labels(const std::vector<DockItem>& items) {
  JSONValue::Array list;
  for (const auto& item : items) {
    JSONValue::Object entry;
    entry.emplace("label", labelOf(item));
    entry.emplace("kind", kindWord(item));
    entry.emplace("address", addressOf(item));
    list.emplace_back(std::move(entry));
  }
  return list;
}

} // namespace

void DockChangeOptions::addTo(CLI::App& command, CommandContext& context) {
  command
      .add_option("--file", files,
                  translated("A Dock preferences file to change in place of your own Dock"))
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  command.add_flag("--dry-run", isDryRun, translated("Show the change and write nothing"));
  addNoRestartFlag(command, restarts);
  context.addJSONFlag(command);
}

void changeDocks(CommandContext& context, const DockChangeOptions& options,
                 const std::vector<DockEdit>& edits) {
  const Date now = context.platform().clock().now();
  std::vector<DockChange> changes;
  for (const auto& name : options.files) {
    const auto file = absolutePath(context, name);
    if (std::ranges::count(changes, file, &DockChange::file) == 0)
      changes.push_back({file, std::make_shared<PlistFileBackend>(file), {}, {}});
  }
  std::optional<DockLibrary> library;
  if (options.files.empty()) {
    library.emplace(context, options.restarts);
    changes.push_back({{}, library->dock(), {}, {}});
  }
  if (options.isDryRun) {
    for (auto& change : changes)
      change.plan(edits, now);
  } else if (library) {
    changeOwnDock(*library, changes.front(), edits, now);
  } else {
    changeFiles(context, changes, edits, now);
  }
  report(context, changes);
}

void sayChanges(CommandContext& context, const DockChangeDetector::Report& report) {
  const auto& console = context.console();
  const auto line = [](const char* mark, const DockItem& item) {
    const auto address = addressOf(item);
    return printable(
        fmt::format("{} {}{}{}", mark, item.displayName(), address.empty() ? "" : "  ", address));
  };
  for (const auto& item : report.removed)
    context.say(console.styled(line("-", item), TextStyle::bad));
  for (const auto& item : report.added)
    context.say(console.styled(line("+", item), TextStyle::good));
  if (report.reordered)
    context.say(translated("~ another order"));
}

JSONValue changesJSON(const DockChangeDetector::Report& report) {
  return JSONValue::Object{{"added", labels(report.added)},
                           {"removed", labels(report.removed)},
                           {"reordered", report.reordered}};
}

JSONValue itemsJSON(const std::vector<PlacedDockItem>& items) {
  JSONValue::Array list;
  for (const auto& one : items) {
    JSONValue::Object entry;
    entry.emplace("section", one.section == DockSection::apps ? "apps" : "others");
    entry.emplace("position", static_cast<std::int64_t>(one.index + 1));
    entry.emplace("label", labelOf(one.item));
    entry.emplace("kind", kindWord(one.item));
    if (const auto address = addressOf(one.item); !address.empty())
      entry.emplace(one.item.url() != nullptr ? "url" : "path", address);
    if (const auto* app = one.item.app(); app != nullptr && app->bundleIdentifier)
      entry.emplace("bundleIdentifier", *app->bundleIdentifier);
    if (const auto* spacer = one.item.spacer())
      entry.emplace("spacer", nameOf(*spacer));
    list.emplace_back(std::move(entry));
  }
  return list;
}

void printItems(CommandContext& context, const std::vector<PlacedDockItem>& items) {
  Table table({{translated("SECTION")},
               {"#", true},
               {translated("LABEL"), false, 32},
               {translated("KIND")},
               {translated("ADDRESS")}});
  for (const auto& one : items)
    table.add({one.section == DockSection::apps ? "apps" : "others",
               std::to_string(one.index + 1),
               {one.item.displayName(), TextStyle::bold},
               translated(kindWord(one.item)),
               addressOf(one.item)});
  if (table.isEmpty())
    context.say(translated("The Dock is empty"));
  else
    table.print(context.console());
}

void addNoRestartFlag(CLI::App& command, bool& restarts) {
  command.add_flag_callback(
      "--no-restart", [&restarts] { restarts = false; },
      translated("Write only; the Dock takes it when it next starts"));
}

std::string textOf(CommandContext& context, const std::string& name) {
  if (name == "-")
    return {std::istreambuf_iterator<char>(context.console().in), {}};
  const auto file = absolutePath(context, name);
  auto text = readFile(file);
  if (!text)
    throw DockError::fileNotFound(file);
  return std::move(*text);
}

} // namespace tavrin
