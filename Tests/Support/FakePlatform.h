#pragma once

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Kinds/FanControl.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/PanelPopover.h"
#include "TavrinPlatform/Platform.h"
#include "Tests/Support/FakeCalendarStore.h"
#include "Tests/Support/FakeHTTPClient.h"
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
  std::optional<std::string> environment(const std::string& name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }

  std::filesystem::path home = "/home/user";
  std::optional<std::filesystem::path> support = "/home/user/.local/share";
  std::map<std::string, std::string> variables;
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
    if (content != content_)
      delete content_;
    content_ = content;
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
  TokenPtr observeAppearance(std::function<void()> handler) override {
    return appearance.add(handler);
  }

  std::optional<RunningApplication> frontmost;
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

class FakeHostStatistics final : public HostStatistics {
public:
  struct Link {
    std::string name;
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
  };
  std::optional<CPULoad> cpuLoad() override {
    ++reads;
    return cpu;
  }
  std::optional<MemoryLoad> memoryLoad() override { return memory; }
  void eachLink(const LinkVisitor& visit) override {
    ++reads;
    for (const auto& link : links)
      visit(link.name, link.received, link.sent);
  }

  std::optional<CPULoad> cpu;
  std::optional<MemoryLoad> memory;
  std::vector<Link> links;
  int reads = 0;
};

class FakePowerSources final : public PowerSources {
public:
  std::vector<PowerSource> list() override { return sources; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  std::vector<PowerSource> sources;
  HandlerList changes;
};

/// A refresh is answered by `changes.call()`.
class FakeConnectedDevices final : public ConnectedDevices {
public:
  std::vector<DeviceBattery> connected() const override { return batteries; }
  void refresh() override { ++refreshes; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  std::vector<DeviceBattery> batteries;
  int refreshes = 0;
  HandlerList changes;
};

/// Begins and ends as the test says.
class FakeInputBlocker final : public InputBlocker {
public:
  bool isPermitted() override { return permitted; }
  void requestPermission() override { ++permissionRequests; }
  bool isSecureInputEnabled() override { return secureInput; }
  bool isScreenLocked() override { return screenLocked; }
  TokenPtr observeEndOfNeed(std::function<void()> handler) override {
    return endOfNeed.add(std::move(handler));
  }
  TokenPtr hold(bool pointer, double limit, Callbacks newCallbacks) override {
    ++holds;
    locksPointer = pointer;
    longest = limit;
    callbacks = std::move(newCallbacks);
    struct Hold final : Token {
      explicit Hold(int& count) : releases(count) {}
      ~Hold() override { ++releases; }
      int& releases;
    };
    return std::make_unique<Hold>(releases);
  }
  bool isHeld() const { return holds > releases; }

  bool permitted = true;
  bool secureInput = false;
  bool screenLocked = false;
  int permissionRequests = 0;
  int holds = 0;
  int releases = 0;
  bool locksPointer = false;
  double longest = 0;
  Callbacks callbacks;
  HandlerList endOfNeed;
};

/// A store of keys; those in `refusing` refuse to be written.
class FakeSMC final : public SMCAccess {
public:
  SMCValue read(const std::string& key) override {
    const auto found = values.find(key);
    if (found == values.end())
      throw FanError::readFailed(key, "the key does not exist");
    return found->second;
  }
  void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override {
    ++attempts;
    if (auto left = refusing.find(key); left != refusing.end() && left->second-- > 0)
      throw FanError::writeFailed(key, "the SMC returned 130");
    values.at(key).bytes = bytes;
    writes.push_back(key + "=" + std::to_string(*values.at(key).number()));
  }
  void set(const std::string& key, double number, const std::string& type) {
    values[key] = {type,
                   SMCValue::encoding(number, type).value_or(std::vector<std::uint8_t>{0, 0})};
  }
  /// `count` fans from 1200 to 6000 rpm that turn at 2000.
  void addFans(int count) {
    set("FNum", count, "ui8 ");
    set("Ftst", 0, "ui8 ");
    for (int fan = 0; fan < count; ++fan) {
      std::string at = "F";
      at += std::to_string(fan);
      set(at + "Ac", 2000, "fpe2");
      set(at + "Mn", 1200, "fpe2");
      set(at + "Mx", 6000, "flt ");
      set(at + "Md", 0, "ui8 ");
      set(at + "Tg", 0, "flt ");
    }
  }
  double number(const std::string& key) { return *values.at(key).number(); }

  std::map<std::string, SMCValue> values;
  /// How often each key refuses.
  std::map<std::string, int> refusing;
  std::vector<std::string> writes;
  int attempts = 0;
};

/// Answers when the test says so.
class FakeFanHelper final : public FanHelperClient {
public:
  Status status() override { return current; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }
  void registerHelper(Reply reply) override {
    ++registrations;
    replies.push_back(std::move(reply));
  }
  void unregisterHelper(Reply reply) override { replies.push_back(std::move(reply)); }
  void openApprovalSettings() override { ++settingsOpened; }
  void setFull(bool full, Reply reply) override {
    asked.push_back(full);
    replies.push_back(std::move(reply));
  }
  void answer(std::optional<Refusal> refusal = {}) {
    const auto pending = std::exchange(replies, {});
    for (const auto& reply : pending)
      reply(refusal);
  }

  Status current = Status::ready;
  HandlerList changes;
  std::vector<Reply> replies;
  std::vector<bool> asked;
  int registrations = 0;
  int settingsOpened = 0;
};

class FakePasteboard final : public Pasteboard {
public:
  bool canObserve() const override { return observable; }
  TokenPtr observe(const Limits& newLimits, Observer newObserver) override {
    limits = newLimits;
    observer = std::move(newObserver);
    struct Observation final : Token {
      explicit Observation(FakePasteboard& board) : board(board) {}
      ~Observation() override { board.observer = {}; }
      FakePasteboard& board;
    };
    return std::make_unique<Observation>(*this);
  }
  /// Tells the observer of the own change at once.
  void write(std::vector<Format> formats) override {
    written.push_back(std::move(formats));
    ++changeCount;
    if (observer.captured)
      observer.captured({changeCount, {}, {}, true});
  }
  /// Somebody copies.
  void copy(const std::vector<std::pair<std::string, std::string>>& formats) {
    Capture capture{++changeCount, {}, {}, false};
    for (const auto& [type, bytes] : formats) {
      capture.types.push_back(type);
      const bool isImage = type.starts_with("image/") && bytes.size() > limits.imageBytes;
      capture.formats.push_back(
          {type, isImage ? nullptr : std::make_shared<const Data>(Data::fromText(bytes)),
           bytes.size()});
    }
    observer.changed(changeCount);
    observer.captured(std::move(capture));
  }
  std::string writtenText() const {
    return written.empty() ? "" : std::string(written.back().front().data->view());
  }

  bool observable = true;
  Limits limits;
  Observer observer;
  std::int64_t changeCount = 0;
  std::vector<std::vector<Format>> written;
};

class FakeKeychain final : public Keychain {
public:
  std::optional<Data> find(const std::string& service, const std::string& account) override {
    refuse();
    const auto found = secrets.find(service + " " + account);
    return found == secrets.end() ? std::nullopt : std::optional(found->second);
  }
  void add(const std::string& service, const std::string& account, const Data& secret) override {
    refuse();
    secrets[service + " " + account] = secret;
  }
  std::map<std::string, Data> secrets;
  /// Not 0: every call fails with it.
  int status = 0;

private:
  void refuse() const {
    if (status != 0)
      throw KeychainError(status);
  }
};

/// Answers when the test says so.
class FakeColourSampler final : public ColourSampler {
public:
  TokenPtr pick(std::function<void(const ColourSample&)> newDone) override {
    done = std::move(newDone);
    ++picks;
    return std::make_unique<Token>();
  }
  std::function<void(const ColourSample&)> done;
  int picks = 0;
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

  ManualClock fakeClock;
  ManualRunLoop loop;
  FakeLog fakeLog;
  FakeApplication fakeApplication;
  FakeMainBundle bundle;
  FakeFileManager files;
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
};

} // namespace tavrin::test
