#pragma once

#include "TavrinCommand/Base/CommandContext.h"
#include "TavrinHost/Dock/DockLibrary.h"

namespace tavrin {

/// What a command that changes Docks was told.
struct DockChangeOptions {
  std::vector<std::string> files;
  bool isDryRun = false;
  bool restarts = true;

  /// `--file`, `--dry-run`, `--no-restart` and `--json`.
  void addTo(CLI::App& command, CommandContext& context);
};

/// Applies the edits to every Dock meant, all of them computed before the first is written, and
/// says what changed. Each Dock is written and restarted once at most, and not at all when nothing
/// changes. The user's own Dock is backed up first.
void changeDocks(CommandContext& context, const DockChangeOptions& options,
                 const std::vector<DockEdit>& edits);

/// Differences as lines of text, or as an object for JSON.
void sayChanges(CommandContext& context, const DockChangeDetector::Report& report);
JSONValue changesJSON(const DockChangeDetector::Report& report);
/// The items of one Dock as a table's rows or a JSON list.
JSONValue itemsJSON(const std::vector<PlacedDockItem>& items);
void printItems(CommandContext& context, const std::vector<PlacedDockItem>& items);

/// "--no-restart", which clears `restarts`.
void addNoRestartFlag(CLI::App& command, bool& restarts);

/// What the file `name` holds, or the standard input for "-". Throws DockError for one that is not
/// there and FileError for one that cannot be read.
std::string textOf(CommandContext& context, const std::string& name);

} // namespace tavrin
