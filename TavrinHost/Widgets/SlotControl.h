#pragma once

#include "TavrinHost/Widgets/WidgetLibrary.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tavrin {

/// Who answers the edit requests of this data folder's widgets goes by it, so that there is one.
std::string editorIdentifier(HostContext& context);

/// The slot applications as processes: which run, starting and stopping them.
class SlotControl {
public:
  using ProcessID = RunningApplications::ProcessID;

  struct Outcome {
    int slot = 0;
    bool isDone = false;
    /// What happened, or why not.
    std::string text;
  };

  explicit SlotControl(HostContext& context) : context_(context) {}

  /// The folder that holds "Tavrin Slot N.app": TAVRIN_BUNDLES, else beside the installed program
  /// or in the build tree. Throws HostError (failed) with the places looked at.
  std::filesystem::path bundlesFolder();
  std::filesystem::path program(int slot);
  std::filesystem::path logFile(int slot);
  /// The program of the settings window: beside this one, or in a bundle among the slots'. Where
  /// there is none, the place beside this one.
  std::filesystem::path settingsProgram();

  /// The slot's process: the owner of its identifier, else whoever runs the slot's program on the
  /// same data folder, at whichever of the known places. Never a process that is not a slot
  /// application.
  std::optional<ProcessID> process(int slot);

  /// Launches those that do not run, and waits until each has come up or failed.
  std::vector<Outcome> start(const std::set<int>& slots);
  /// The same without waiting: what was launched may still fail.
  std::vector<Outcome> launchAll(const std::set<int>& slots);
  /// Asks those that run to end, and ends those that do not within some seconds.
  std::vector<Outcome> stop(const std::set<int>& slots);
  /// Has the slot's panel open, starting its application when need be.
  Outcome open(int slot);
  /// Gives the slot's tile the keyboard. False where it cannot have it.
  bool focus(int slot);

  /// The helper that answers edit requests of the slots; started where an editor can be shown.
  void startEditor();
  void stopEditor();

private:
  std::vector<std::filesystem::path> usualPlaces();
  std::optional<std::filesystem::path> chosenPlace();
  RunningApplications::Launch launchOf(int slot, const std::vector<std::string>& arguments);
  struct Launched {
    std::vector<Outcome> outcomes;
    /// Which of them were launched, and as which processes.
    std::vector<std::pair<std::size_t, ProcessID>> waiting;
  };

  Launched launchThose(const std::set<int>& slots);
  Outcome launch(int slot, const std::vector<std::string>& arguments, ProcessID& process);
  void waitForLaunched(std::vector<std::pair<Outcome*, ProcessID>> launched);
  bool isSlotProgram(ProcessID process, int slot);
  bool sharesDataFolder(ProcessID process);
  /// Whether the slot has a process, and will have it: one without the slot's name begins, and takes
  /// that, or ends. Waits until it is known which.
  bool runs(int slot);
  /// Why the slot cannot be had: its identifier belongs to a slot application on another data
  /// folder. No value where it can.
  std::optional<std::string> refusal(int slot);
  /// Of what the slot has printed since it was started.
  std::string lastLogLine(int slot);

  RunningApplications& applications() { return context_.platform().applications(); }

  HostContext& context_;
  /// How long each slot's log was when the slot was started.
  std::map<int, std::uintmax_t> logStarts_;
};

} // namespace tavrin
