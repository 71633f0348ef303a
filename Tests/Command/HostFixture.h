#pragma once

#include "TavrinCommand/Program.h"
#include "TavrinCore/Dock/DockItem.h"
#include "Tests/Command/FakeDockServices.h"
#include "Tests/Support/FakePlatform.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace tavrin::test {

/// The labels of both sections, with a bar between them.
inline std::string labelsOf(const DockSnapshot& dock) {
  std::string text;
  for (const auto& item : dock.apps)
    text += item.displayName() + " ";
  text += "|";
  for (const auto& item : dock.others)
    text += " " + item.displayName();
  return text;
}

/// Programs that exist only here. A launched one owns its identifier at once.
class FakeRunningApplications final : public RunningApplications {
public:
  bool knowsIdentifiers() override { return hasBus; }
  std::optional<ProcessID> processOwning(const std::string& identifier) override {
    const auto found = owners.find(identifier);
    return found == owners.end() ? std::nullopt : std::optional(found->second);
  }
  bool claimIdentifier(const std::string& identifier) override {
    return hasBus && owners.emplace(identifier, 1).second;
  }
  std::vector<ProcessID> processesRunning(const std::filesystem::path& program) override {
    std::vector<ProcessID> found;
    for (const auto& [process, running] : programs)
      if (running == program)
        found.push_back(process);
    return found;
  }
  std::unique_ptr<FileManager> fileManagerOf(ProcessID process) override {
    const auto known = environments.find(process);
    if (known == environments.end())
      return nullptr;
    auto files = std::make_unique<FakeFileManager>();
    files->variables = known->second;
    return files;
  }
  std::optional<std::filesystem::path> programOf(ProcessID process) override {
    const auto found = programs.find(process);
    return found == programs.end() ? std::nullopt : std::optional(found->second);
  }
  ProcessID launch(const Launch& launch) override {
    launches.push_back(launch);
    const int process = 100 + static_cast<int>(launches.size());
    programs[process] = launch.program;
    if (onLaunch)
      onLaunch(launch, process);
    return process;
  }
  std::vector<ProcessID> launchTogether(const std::vector<Launch>& together) override {
    std::vector<ProcessID> processes;
    for (const auto& each : together)
      processes.push_back(launch(each));
    return processes;
  }
  bool isAlive(ProcessID process) override { return programs.contains(process); }
  void terminate(ProcessID process, bool force) override {
    terminations.emplace_back(process, force);
    if (!stubborn || force)
      programs.erase(process);
  }
  bool canStart(const std::string& identifier) override { return startable.contains(identifier); }
  using RunningApplications::perform;
  bool perform(const std::string& identifier, const std::string& action,
               const std::optional<std::string>&) override {
    if (hasBus)
      actions.push_back(action + " " + identifier);
    return hasBus;
  }

  bool hasBus = true;
  bool stubborn = false;
  std::map<std::string, ProcessID> owners;
  /// What the desktop can start.
  std::set<std::string> startable;
  std::map<ProcessID, std::filesystem::path> programs;
  std::map<ProcessID, std::map<std::string, std::string>> environments;
  std::vector<Launch> launches;
  std::vector<std::pair<ProcessID, bool>> terminations;
  std::vector<std::string> actions;
  std::function<void(const Launch&, ProcessID)> onLaunch;
};

class FakeCommandPlatform final : public CommandPlatform {
public:
  Clock& clock() override { return time; }
  FileManager& fileManager() override { return files; }
  MainBundle& mainBundle() override { return bundle; }
  DistributedNotificationCenter& notifications() override { return center; }
  RunningApplications& applications() override { return running; }
  DockServices& dockServices() override { return dock; }
  Autostart& autostart() override { return starting; }
  DesktopReport desktopReport() override { return desktop; }
  bool showsWindows() override { return hasDisplay; }
  std::filesystem::path program() override { return "/opt/tavrin/bin/tavrin"; }
  void wait(double seconds) override { waited += seconds; }
  void waitForEvent() override {}
  bool ownsTerminal() override { return isInFront; }
  int runInForeground(const std::vector<std::string>& words) override {
    return editor ? editor(words) : 127;
  }

  struct FixedClock final : Clock {
    Date now() const override { return date; }
    /// 2026-03-01 12:00 in Berlin.
    Date date = Date::fromUnixSeconds(1'772'362'800);
  } time;
  struct Center final : DistributedNotificationCenter {
    using DistributedNotificationCenter::post;
    void post(const std::string& name, const std::optional<std::string>&) override {
      posts.push_back(name);
    }
    TokenPtr observe(const std::string&, Handler) override { return std::make_unique<Token>(); }
    std::vector<std::string> posts;
  } center;
  FakeFileManager files;
  FakeMainBundle bundle;
  FakeRunningApplications running;
  FakeDockServices dock{files};
  DesktopReport desktop;
  bool hasDisplay = true;
  struct Starting final : Autostart {
    Status status() override { return {isOn, true, isOn ? "It is on." : "It is off."}; }
    Status set(bool wanted) override {
      isOn = wanted && !isStuck;
      return status();
    }
    bool isOn = false;
    bool isStuck = false;
  } starting;
  double waited = 0;
  bool isInFront = true;
  std::function<int(const std::vector<std::string>&)> editor;
};

/// The command line over a scratch data folder.
class HostTest : public testing::Test {
protected:
  HostTest() {
    std::string name = "/tmp/tavrin-host-XXXXXX";
    folder = mkdtemp(name.data());
    platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder / "data";
    platform.files.state = folder / "state";
  }
  ~HostTest() override { std::filesystem::remove_all(folder); }

  int run(const std::vector<std::string>& words, const std::string& typed = "") {
    output.str("");
    errors.str("");
    std::istringstream input(typed);
    Console console{output, errors, input, isInteractive};
    console.columns = columns;
    CommandContext context(platform, console);
    return runCommandLine(context, words);
  }
  JSONValue json(std::vector<std::string> words) {
    words.push_back("--json");
    EXPECT_EQ(run(words), 0) << errors.str();
    return JSONValue::parse(output.str());
  }
  std::filesystem::path widgetsFile() const { return folder / "data/widgets.json"; }
  std::string fileText() const {
    std::ifstream file(widgetsFile());
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void writeFile(const std::string& text) const {
    std::filesystem::create_directories(folder / "data");
    std::ofstream(widgetsFile()) << text;
  }

  std::filesystem::path folder;
  FakeCommandPlatform platform;
  std::ostringstream output;
  std::ostringstream errors;
  bool isInteractive = false;
  int columns = 0;
};

/// The host's library without anybody to tell.
class SilentContext final : public HostContext {
public:
  using HostContext::HostContext;
  void say(std::string_view) override {}
  void remark(std::string_view) override {}
};

} // namespace tavrin::test
