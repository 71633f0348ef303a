#pragma once

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/PanelPopover.h"
#include "TavrinPlatform/Platform.h"
#include "Tests/Support/FakeApplicationLibrary.h"
#include "Tests/Support/FakeCalendarStore.h"
#include "Tests/Support/FakeClipboard.h"
#include "Tests/Support/FakeFolderWatch.h"
#include "Tests/Support/FakeGlobalShortcuts.h"
#include "Tests/Support/FakeHTTPClient.h"
#include "Tests/Support/FakeHardware.h"
#include "Tests/Support/FakeMediaPlayers.h"
#include "Tests/Support/FakeNearbyDevices.h"
#include "Tests/Support/HandlerList.h"
#include "Tests/Support/ManualRunLoop.h"

#include <QWidget>
#include <algorithm>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tavrin::test {

class FakeLog final : public LogSink {
public:
  void write(LogLevel level, std::string_view, std::string_view category,
             std::string_view message) override {
    constexpr const char* names[] = {"debug", "info", "error"};
    lines.push_back(std::string(names[static_cast<int>(level)]) + " " + std::string(category) +
                    " " + std::string(message));
  }
  std::vector<std::string> lines;
};

class FakeApplication final : public Application {
public:
  std::vector<std::string> arguments() const override { return args; }
  void terminate() override { ++terminations; }
  void requestUserAttention() override { ++attentionRequests; }
  void cancelUserAttention() override { ++attentionCancellations; }
  void keepMemoryPrivate() override { isMemoryPrivate = true; }

  bool isMemoryPrivate = false;
  std::vector<std::string> args;
  int terminations = 0;
  int attentionRequests = 0;
  int attentionCancellations = 0;
};

class FakeMainBundle final : public MainBundle {
public:
  std::optional<std::filesystem::path> path() const override { return bundlePath; }
  std::optional<std::string> identifier() const override { return string("CFBundleIdentifier"); }
  std::optional<std::string> string(const std::string& key) const override {
    const auto found = strings.find(key);
    return found == strings.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<long> integer(const std::string& key) const override {
    const auto found = integers.find(key);
    return found == integers.end() ? std::nullopt : std::optional(found->second);
  }

  std::optional<std::filesystem::path> bundlePath;
  std::map<std::string, std::string> strings;
  std::map<std::string, long> integers;
};

class FakeFileManager final : public FileManager {
public:
  std::filesystem::path homeFolder() const override { return home; }
  std::filesystem::path applicationSupportFolder() const override {
    if (!support)
      throw FileError("Failed to find Application Support because the user has none");
    return *support;
  }
  std::filesystem::path cachesFolder() const override { return home / ".cache"; }
  std::filesystem::path stateFolder() const override {
    return state.empty() ? home / ".local/state" : state;
  }
  std::optional<std::string> environment(const std::string& name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }
  std::vector<std::filesystem::path> toolFolders() const override { return tools; }
  std::filesystem::path unicodeFolder() const override { return unicode; }

  std::filesystem::path home = "/home/user";
  std::filesystem::path state;
  std::optional<std::filesystem::path> support = "/home/user/.local/share";
  std::map<std::string, std::string> variables;
  std::vector<std::filesystem::path> tools;
  std::filesystem::path unicode;
};

class FakeUserDefaults final : public UserDefaults {
public:
  std::optional<JSONValue> value(const std::string& key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void set(const std::string& key, const JSONValue& value) override {
    values[key] = value;
    ++writes;
  }
  void remove(const std::string& key) override { values.erase(key); }

  std::map<std::string, JSONValue> values;
  int writes = 0;
};

/// Delivers at once to every observer of this object, the poster's own included.
class FakeNotificationCenter final : public DistributedNotificationCenter {
public:
  struct Post {
    std::string name;
    std::optional<std::string> object;
    bool operator==(const Post&) const = default;
  };

  using DistributedNotificationCenter::post;
  void post(const std::string& name, const std::optional<std::string>& object) override {
    posts.push_back({name, object});
    const auto observers = observers_;
    for (const auto& observer : observers)
      if (observer->name == name && observer->isLive)
        observer->handler(object);
  }
  TokenPtr observe(const std::string& name, Handler handler) override {
    observers_.push_back(std::make_shared<Observer>(Observer{name, std::move(handler), true}));
    return std::make_unique<ObserverToken>(observers_.back());
  }
  int count(const std::string& name) const {
    return static_cast<int>(
        std::count_if(posts.begin(), posts.end(), [&](const Post& p) { return p.name == name; }));
  }

  std::vector<Post> posts;

private:
  struct Observer {
    std::string name;
    Handler handler;
    bool isLive;
  };
  struct ObserverToken final : Token {
    explicit ObserverToken(std::shared_ptr<Observer> observer) : observer(std::move(observer)) {}
    ~ObserverToken() override { observer->isLive = false; }
    std::shared_ptr<Observer> observer;
  };
  std::vector<std::shared_ptr<Observer>> observers_;
};

class FakeDockTile final : public DockTile {
public:
  Format format() const override { return current; }
  void setPlace(const Place& newPlace) override {
    place = newPlace;
    if (!squareOnly && current.span != newPlace.span) {
      current.span = newPlace.span;
      if (onFormatChange)
        onFormatChange();
    }
  }
  void setLabel(const std::string& newName, const std::string& newValue) override {
    name = newName;
    value = newValue;
  }
  void display(const QImage& image) override {
    last = image.copy();
    ++displays;
  }
  bool isVisible() const override { return visible; }

  Format current{64, 1, 1};
  Place place;
  bool squareOnly = false;
  bool visible = true;
  std::string name;
  std::string value;
  QImage last;
  int displays = 0;
};

class FakePopover final : public PanelPopover {
public:
  ~FakePopover() override { delete content_; }
  void setContent(QWidget* content) override {
    if (content == content_)
      return;
    const bool isSeen = content_ != nullptr && content_->isVisible();
    delete content_;
    content_ = content;
    if (isSeen && content != nullptr)
      content->show();
  }
  QWidget* content() const override { return content_; }
  void setContentSize(QSize newSize) override { size = newSize; }
  bool isShown() const override { return shown; }
  void show(Point newAnchor, RectEdge newEdge) override {
    shown = true;
    anchor = newAnchor;
    edge = newEdge;
    ++openings;
  }
  void close() override {
    if (!shown)
      return;
    shown = false;
    ++closings;
    if (onClose)
      onClose();
  }

  QSize size;
  Point anchor;
  RectEdge edge = RectEdge::maxY;
  bool shown = false;
  int openings = 0;
  int closings = 0;

private:
  QWidget* content_ = nullptr;
};

class FakeDockGeometry final : public DockGeometry {
public:
  std::optional<Rect> dockFrame() const override { return frame; }
  std::optional<Point> ownTileCenter() const override { return tileCenter; }
  DockPreferences preferences() const override { return prefs; }
  Point pointer() const override { return mouse; }
  std::vector<ScreenFrames> screens() const override { return allScreens; }
  std::optional<ScreenFrames> mainScreen() const override {
    return allScreens.empty() ? std::nullopt : std::optional(allScreens.front());
  }

  std::optional<Rect> frame;
  std::optional<Point> tileCenter;
  DockPreferences prefs;
  Point mouse;
  std::vector<ScreenFrames> allScreens;
};

class FakeWorkspace final : public Workspace {
public:
  std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
  void open(const std::string& target) override { opened.push_back(target); }
  bool openActivityMonitor() override {
    ++activityMonitors;
    return hasActivityMonitor;
  }
  TokenPtr observeWake(std::function<void()> handler) override { return wake.add(handler); }
  TokenPtr observeDayChange(std::function<void()> handler) override {
    return dayChange.add(handler);
  }
  TokenPtr observeClockChange(std::function<void()> handler) override {
    return clockChange.add(handler);
  }
  bool isLowPowerMode() const override { return lowPower; }
  TokenPtr observeLowPowerMode(std::function<void()> handler) override {
    return lowPowerChange.add(handler);
  }
  bool prefersReducedMotion() const override { return reducedMotion; }
  bool prefersDarkAppearance() const override { return dark; }
  std::optional<std::string> interfaceFontFamily() const override { return fontFamily; }
  double interfaceTextScale() const override { return textScale; }
  bool mixesWindows() const override { return isComposited; }
  bool prefersHighContrast() const override { return highContrast; }
  TokenPtr observeAppearance(std::function<void()> handler) override {
    return appearance.add(handler);
  }

  std::optional<RunningApplication> frontmost;
  double textScale = 1;
  bool isComposited = true;
  bool highContrast = false;
  std::vector<std::string> opened;
  bool hasActivityMonitor = true;
  int activityMonitors = 0;
  HandlerList wake;
  HandlerList dayChange;
  HandlerList clockChange;
  HandlerList lowPowerChange;
  HandlerList appearance;
  bool lowPower = false;
  bool reducedMotion = false;
  bool dark = false;
  std::optional<std::string> fontFamily;
};

class FakeUserNotifications final : public UserNotificationCenter {
public:
  void requestAuthorization(std::function<void(bool)> answer) override { answer(grants); }
  void add(const UserNotificationRequest& request) override {
    pending[request.identifier] = request;
  }
  void removePending(const std::string& identifier) override { pending.erase(identifier); }

  bool grants = true;
  std::map<std::string, UserNotificationRequest> pending;
};

class FakeSounds final : public SoundPlayer {
public:
  void play(const std::string& name) override { played.push_back(name); }
  std::vector<std::string> played;
};

/// Answers with `result` when the run loop runs its posts.
class FakeProcesses final : public ProcessRunner {
public:
  explicit FakeProcesses(RunLoop& runLoop) : runLoop_(runLoop) {}
  TokenPtr run(ProcessRequest request, std::function<void(const ProcessResult&)> done) override {
    requests.push_back(std::move(request));
    struct Run final : Token {
      std::shared_ptr<int> alive = std::make_shared<int>();
    };
    auto token = std::make_unique<Run>();
    runLoop_.post([done = std::move(done), weak = std::weak_ptr(token->alive), answer = result] {
      if (weak.lock())
        done(answer);
    });
    return token;
  }
  std::vector<ProcessRequest> requests;
  ProcessResult result{ProcessResult::Outcome::exited, 0, "", "", false};

private:
  RunLoop& runLoop_;
};

/// Every service in memory; each records what was asked of it.
class FakePlatform final : public Platform {
public:
  explicit FakePlatform(Date now = {800'000'000}) : fakeClock(now), loop(fakeClock) {}

  LogSink& log() override { return fakeLog; }
  Clock& clock() override { return fakeClock; }
  RunLoop& runLoop() override { return loop; }
  Application& application() override { return fakeApplication; }
  MainBundle& mainBundle() override { return bundle; }
  FileManager& fileManager() override { return files; }
  UserFiles& userFiles() override { return fakeUserFiles; }
  FolderWatch& folderWatch() override { return folders; }
  UserDefaults& userDefaults() override { return defaults; }
  DistributedNotificationCenter& notifications() override { return center; }
  DockTile& dockTile() override { return tile; }
  DockGeometry& dockGeometry() override { return geometry; }
  PanelPopover& popover() override { return fakePopover; }
  Workspace& workspace() override { return fakeWorkspace; }
  UserNotificationCenter& userNotifications() override { return notices; }
  SoundPlayer& sounds() override { return fakeSounds; }
  ProcessRunner& processes() override { return fakeProcesses; }
  HTTPClient& http() override { return fakeHTTP; }
  CalendarStore& calendars() override { return fakeCalendars; }
  HostStatistics& hostStatistics() override { return host; }
  PowerSources& powerSources() override { return power; }
  ConnectedDevices& connectedDevices() override { return devices; }
  InputBlocker& inputBlocker() override { return blocker; }
  SMCAccess& smc() override { return fakeSMC; }
  FanHelperClient& fanHelper() override { return fans; }
  Pasteboard& pasteboard() override { return fakePasteboard; }
  ColourSampler& colourSampler() override { return fakeSampler; }
  Keychain& keychain() override { return fakeKeychain; }
  GlobalShortcuts& globalShortcuts() override { return fakeShortcuts; }
  ApplicationLibrary& applications() override { return library; }
  MediaPlayers& mediaPlayers() override { return media; }
  NearbyDevices& nearbyDevices() override { return nearby; }

  ManualClock fakeClock;
  ManualRunLoop loop;
  FakeLog fakeLog;
  FakeApplication fakeApplication;
  FakeMainBundle bundle;
  FakeFileManager files;
  FakeUserFiles fakeUserFiles;
  FakeFolderWatch folders;
  FakeUserDefaults defaults;
  FakeNotificationCenter center;
  FakeDockTile tile;
  FakeDockGeometry geometry;
  FakePopover fakePopover;
  FakeWorkspace fakeWorkspace;
  FakeUserNotifications notices;
  FakeSounds fakeSounds;
  FakeProcesses fakeProcesses{loop};
  FakeHTTPClient fakeHTTP{loop};
  FakeCalendarStore fakeCalendars{loop};
  FakeHostStatistics host;
  FakePowerSources power;
  FakeConnectedDevices devices;
  FakeInputBlocker blocker;
  FakeSMC fakeSMC;
  FakeFanHelper fans;
  FakePasteboard fakePasteboard;
  FakeColourSampler fakeSampler;
  FakeKeychain fakeKeychain;
  FakeGlobalShortcuts fakeShortcuts;
  FakeApplicationLibrary library{loop};
  FakeMediaPlayers media;
  FakeNearbyDevices nearby;
};

} // namespace tavrin::test
