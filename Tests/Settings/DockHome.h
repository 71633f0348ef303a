#pragma once

#include "TavrinHost/Dock/DockItems.h"
#include "TavrinSettings/Dock/DockJob.h"
#include "TavrinSettings/Dock/ProfilesEditor.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "Tests/Command/HostFixture.h"
#include "Tests/Support/ManualRunLoop.h"

namespace tavrin::test {

/// A home with a Dock, before anybody asks for it.
class DockHome : public HostTest {
protected:
  DockHome() {
    platform.files.home = folder / "home";
    std::filesystem::create_directories(dockFile().parent_path());
    show({"/Applications/Mail.app", "/Applications/Notes.app"});
  }
  std::filesystem::path dockFile() const {
    return folder / "home/Library/Preferences/com.apple.dock.plist";
  }
  void show(const std::vector<std::string>& paths) const {
    DockSnapshot dock;
    for (const auto& path : paths)
      dock.apps.push_back({AppEntry{path, {}, std::filesystem::path(path).stem().string(), {}}});
    dockPlistWriter(dockFile()).write(dock);
  }
  std::string shown() const {
    std::string text;
    for (const auto& item : dockPlistReader(dockFile()).read({}).apps)
      text += item.displayName() + " ";
    return text;
  }
};

class DockLayoutTest : public DockHome {
protected:
  DockLayoutTest() {
    job.onProgress = [this](const std::string& sentence, DockJob::Stage stage) {
      stages.push_back(stage);
      said.push_back((stage == DockJob::Stage::failed ? "! " : "") + sentence);
    };
  }

  SilentContext context{platform};
  History history;
  ManualClock clock{Date{}};
  ManualRunLoop loop{clock};
  ProfilesEditor profiles{context, history};
  DockJob job{context, history, loop};
  std::vector<std::string> said;
  std::vector<DockJob::Stage> stages;
};

} // namespace tavrin::test
