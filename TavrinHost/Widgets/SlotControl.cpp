#include "TavrinHost/Widgets/SlotControl.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinStorage/StoragePath.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>

namespace tavrin {
namespace {

constexpr double pollInterval = 0.02;
constexpr double launchLimit = 15;
/// Where no identifier tells that a slot is up, it has to live this long to count as started.
constexpr double survivalTime = 0.5;
/// For a process that begins or ends to have done so.
constexpr double settlingLimit = 2;
constexpr double politeLimit = 5;
constexpr double forcedLimit = 2;
constexpr std::uintmax_t logLimit = 1024 * 1024;

const std::filesystem::path programInBundle = "Contents/MacOS/TavrinSlot";
constexpr const char* settingsBundle = "Tavrin Settings.app/Contents/MacOS/TavrinSettings";

/// Lets time pass until `isDone` or `limit` seconds are over.
template <class Done> void waitUntil(CommandPlatform& platform, double limit, Done isDone) {
  // Counted in waits, not read off a clock: a clock set meanwhile must not end the waiting.
  for (double waited = 0; !isDone() && waited < limit; waited += pollInterval)
    platform.wait(pollInterval);
}

} // namespace

std::vector<std::filesystem::path> SlotControl::usualPlaces() {
  const auto folder = context_.platform().program().parent_path();
  std::vector<std::filesystem::path> places = {
      folder.parent_path() / "lib/tavrin", folder.parent_path() / "bundles", folder / "bundles"};
  // A program that has a bundle lies among the slots'.
  if (const auto bundle = context_.platform().mainBundle().path())
    places.push_back(bundle->parent_path());
  return places;
}

std::optional<std::filesystem::path> SlotControl::chosenPlace() {
  const auto chosen = context_.platform().fileManager().environment("TAVRIN_BUNDLES");
  return chosen && !chosen->empty() ? std::optional<std::filesystem::path>(*chosen) : std::nullopt;
}

std::filesystem::path SlotControl::bundlesFolder() {
  const auto chosen = chosenPlace();
  const auto places = chosen ? std::vector{*chosen} : usualPlaces();
  for (const auto& place : places)
    if (std::error_code error;
        std::filesystem::exists(place / DockSlot::bundleName(1) / programInBundle, error))
      return place;
  std::vector<std::string> names;
  for (const auto& place : places)
    names.push_back(fmt::format("\"{}\"", place.string()));
  throw HostError(ExitCode::failed, failure("find the slot applications",
                                            translated("there is no \"{bundle}\" in {names}",
                                                       {{"bundle", DockSlot::bundleName(1)},
                                                        {"names", alternatives(names)}})));
}

std::filesystem::path SlotControl::program(int slot) {
  return bundlesFolder() / DockSlot::bundleName(slot) / programInBundle;
}

std::filesystem::path SlotControl::logFile(int slot) {
  return context_.stateFolder() / fmt::format("slot-{}.log", slot);
}

std::filesystem::path SlotControl::settingsProgram() {
  const auto beside = context_.platform().program().parent_path() / "tavrin-settings";
  auto places = usualPlaces();
  if (const auto chosen = chosenPlace())
    places.insert(places.begin(), *chosen);
  std::error_code error;
  if (!std::filesystem::exists(beside, error))
    for (const auto& place : places)
      if (std::filesystem::exists(place / settingsBundle, error))
        return place / settingsBundle;
  return beside;
}

bool SlotControl::isSlotProgram(ProcessID process, int slot) {
  const auto program = applications().programOf(process);
  return program &&
         program->string().ends_with(
             "/" + (std::filesystem::path(DockSlot::bundleName(slot)) / programInBundle).string());
}

/// Another desk of the same user, such as a test's, runs the same programs on other widgets.
bool SlotControl::sharesDataFolder(ProcessID process) {
  const auto theirs = applications().fileManagerOf(process);
  if (!theirs)
    return true;
  auto& platform = context_.platform();
  const auto folder = [&](const FileManager& files) {
    return StoragePath(files, platform.mainBundle()).resolvedDirectory();
  };
  std::error_code error;
  return std::filesystem::equivalent(folder(*theirs), folder(platform.fileManager()), error);
}

std::optional<int> SlotControl::process(int slot) {
  const auto owner = applications().processOwning(DockSlot::bundleIdentifier(slot));
  if (owner && isSlotProgram(*owner, slot) && sharesDataFolder(*owner))
    return owner;
  // One that runs is found wherever it was started from, whatever the choice for the next start.
  auto places = usualPlaces();
  if (const auto chosen = chosenPlace())
    places.insert(places.begin(), *chosen);
  for (const auto& place : places) {
    if (std::error_code error; !std::filesystem::exists(place, error))
      continue;
    for (const auto running :
         applications().processesRunning(place / DockSlot::bundleName(slot) / programInBundle))
      if (sharesDataFolder(running))
        return running;
  }
  return std::nullopt;
}

bool SlotControl::runs(int slot) {
  auto found = process(slot);
  if (!found || !applications().knowsIdentifiers())
    return found.has_value();
  const auto identifier = DockSlot::bundleIdentifier(slot);
  waitUntil(context_.platform(), settlingLimit, [&] {
    found = process(slot);
    return !found || applications().processOwning(identifier) == found;
  });
  return found.has_value();
}

std::optional<std::string> SlotControl::refusal(int slot) {
  const auto owner = applications().processOwning(DockSlot::bundleIdentifier(slot));
  if (!owner || !isSlotProgram(*owner, slot) || sharesDataFolder(*owner))
    return std::nullopt;
  return translated("process {process} shows this slot of another data folder",
                    {{"process", *owner}});
}

std::string SlotControl::lastLogLine(int slot) {
  std::ifstream log(logFile(slot));
  log.seekg(static_cast<std::streamoff>(logStarts_[slot]));
  std::string last;
  for (std::string line; std::getline(log, line);)
    if (!line.empty())
      last = line;
  return last;
}

RunningApplications::Launch SlotControl::launchOf(int slot,
                                                  const std::vector<std::string>& arguments) {
  const auto log = logFile(slot);
  std::error_code error;
  // One file back is enough to see what went wrong; an old line must not pass for a new one.
  if (std::filesystem::file_size(log, error) > logLimit && !error)
    std::filesystem::rename(log, log.string() + ".old", error);
  const auto length = std::filesystem::file_size(log, error);
  logStarts_[slot] = error ? 0 : length;
  return {program(slot), arguments, {{"TAVRIN_LOG", "stderr"}}, log};
}

SlotControl::Outcome SlotControl::launch(int slot, const std::vector<std::string>& arguments,
                                         ProcessID& process) {
  try {
    process = applications().launch(launchOf(slot, arguments));
    return {slot, true, "started"};
  } catch (const FileError& failed) {
    return {slot, false, failed.what()};
  }
}

void SlotControl::waitForLaunched(std::vector<std::pair<Outcome*, ProcessID>> launched) {
  const bool hasIdentifiers = applications().knowsIdentifiers();
  const double limit = hasIdentifiers ? launchLimit : survivalTime;
  waitUntil(context_.platform(), limit, [&] {
    std::erase_if(launched, [&](auto& entry) {
      auto& [outcome, process] = entry;
      if (!applications().isAlive(process)) {
        const auto line = lastLogLine(outcome->slot);
        outcome->isDone = false;
        outcome->text = line.empty() ? translated("ended at once and said nothing")
                                     : translated("ended: {line}", {{"line", line}});
        return true;
      }
      return hasIdentifiers &&
             applications().processOwning(DockSlot::bundleIdentifier(outcome->slot)) == process;
    });
    return launched.empty();
  });
  if (!hasIdentifiers)
    return;
  for (const auto& [outcome, unused] : launched)
    *outcome = {
        outcome->slot, false,
        translated("runs, but did not answer within {seconds} s", {{"seconds", launchLimit}})};
}

SlotControl::Launched SlotControl::launchThose(const std::set<int>& slots) {
  std::vector<Outcome> outcomes;
  std::vector<std::size_t> waiting;
  std::vector<RunningApplications::Launch> launches;
  for (const int slot : slots) {
    const bool runs = this->runs(slot);
    const auto refused = runs ? std::nullopt : refusal(slot);
    outcomes.push_back({slot, !refused,
                        refused ? *refused
                        : runs  ? translated("runs already")
                                : translated("started")});
    if (runs || refused)
      continue;
    waiting.push_back(outcomes.size() - 1);
    launches.push_back(launchOf(slot, {"--background"}));
  }
  std::vector<ProcessID> processes;
  std::string fault = translated("could not be started");
  try {
    processes = applications().launchTogether(launches);
  } catch (const FileError& failed) {
    fault = failed.what();
  }
  processes.resize(launches.size());
  Launched launched{std::move(outcomes), {}};
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    auto& outcome = launched.outcomes[waiting[i]];
    if (processes[i] > 0)
      launched.waiting.emplace_back(waiting[i], processes[i]);
    else
      outcome = {outcome.slot, false, fault};
  }
  return launched;
}

std::vector<SlotControl::Outcome> SlotControl::launchAll(const std::set<int>& slots) {
  return launchThose(slots).outcomes;
}

std::vector<SlotControl::Outcome> SlotControl::start(const std::set<int>& slots) {
  auto launched = launchThose(slots);
  std::vector<std::pair<Outcome*, ProcessID>> watched;
  for (const auto& [index, process] : launched.waiting)
    watched.emplace_back(&launched.outcomes[index], process);
  waitForLaunched(std::move(watched));
  return std::move(launched.outcomes);
}

std::vector<SlotControl::Outcome> SlotControl::stop(const std::set<int>& slots) {
  std::map<int, ProcessID> running;
  for (const int slot : slots)
    if (const auto found = process(slot))
      running.emplace(slot, *found);
  const auto stillRuns = [&](int slot) {
    return applications().isAlive(running.at(slot)) && isSlotProgram(running.at(slot), slot);
  };
  const auto haveEnded = [&] {
    return std::ranges::none_of(running, [&](const auto& e) { return stillRuns(e.first); });
  };
  for (const auto& [unused, found] : running)
    applications().terminate(found, false);
  waitUntil(context_.platform(), politeLimit, haveEnded);

  std::set<int> forced;
  for (const auto& [slot, found] : running)
    if (stillRuns(slot)) {
      applications().terminate(found, true);
      forced.insert(slot);
    }
  waitUntil(context_.platform(), forcedLimit, haveEnded);

  std::vector<Outcome> outcomes;
  for (const auto& [slot, found] : running)
    outcomes.push_back(
        {slot, !stillRuns(slot),
         stillRuns(slot) ? translated("process {process} does not end", {{"process", found}})
         : forced.contains(slot) ? translated("did not end when asked; ended by force")
                                 : translated("stopped")});
  return outcomes;
}

SlotControl::Outcome SlotControl::open(int slot) {
  const auto identifier = DockSlot::bundleIdentifier(slot);
  if (process(slot)) {
    if (applications().perform(identifier, "open"))
      return {slot, true, translated("panel open")};
    return {slot, false,
            applications().knowsIdentifiers()
                ? translated("does not answer")
                : translated("cannot be reached without a session bus")};
  }
  if (const auto refused = refusal(slot))
    return {slot, false, *refused};
  // Started by itself, without "--background", a slot opens its panel.
  ProcessID started = 0;
  auto outcome = launch(slot, {}, started);
  if (outcome.isDone)
    waitForLaunched({{&outcome, started}});
  if (outcome.isDone)
    outcome.text = translated("started, panel open");
  return outcome;
}

bool SlotControl::focus(int slot) {
  return process(slot) && applications().perform(DockSlot::bundleIdentifier(slot), "focus");
}

std::string editorIdentifier(HostContext& context) {
  return folderIdentifier(context, "dev.quellby.Tavrin.Editor");
}

void SlotControl::startEditor() {
  auto& files = context_.platform().fileManager();
  const bool hasScreen = files.environment("DISPLAY") || files.environment("WAYLAND_DISPLAY");
  const auto identifier = editorIdentifier(context_);
  if (!hasScreen || !applications().knowsIdentifiers() || applications().processOwning(identifier))
    return;
  // The slots themselves have the settings window opened, where the desktop can start it.
  if (applications().canStart(std::string(DockSlot::hostIdentifier)))
    return;
  applications().launch(
      {context_.platform().program(), {"edit"}, {}, context_.stateFolder() / "edit.log"});
}

void SlotControl::stopEditor() {
  const auto owner = applications().processOwning(editorIdentifier(context_));
  if (owner && applications().programOf(*owner) == context_.platform().program())
    applications().terminate(*owner, false);
}

} // namespace tavrin
