#include "TavrinPlatform/Linux/Applications/SystemMonitorEntry.h"

#include "TavrinPlatform/Linux/Applications/DesktopEntries.h"

namespace tavrin {
namespace {

/// How well an entry suits; 0 for not at all.
int suitability(const DesktopEntry& entry, const std::string& desktop) {
  if (!entry.isShownIn(desktop) || entry.runsInTerminal || !entry.hasCategory("Monitor") ||
      !entry.hasCategory("System"))
    return 0;
  return entry.isMadeFor(desktop) ? 2 : 1;
}

} // namespace

std::vector<std::string> systemMonitorCommand(const std::vector<std::filesystem::path>& folders,
                                              const std::string& currentDesktop) {
  std::vector<std::string> best;
  int bestSuitability = 0;
  for (const auto& found : DesktopEntries(folders, {}).all()) {
    const int suits = suitability(found.entry, currentDesktop);
    if (suits <= bestSuitability || !hasProgram(found.entry))
      continue;
    best = execWords(found.entry.exec, {found.entry.name, found.entry.icon, found.file.string()});
    bestSuitability = suits;
  }
  return best;
}

} // namespace tavrin
