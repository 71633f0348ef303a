#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/UsageLogs.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>
#include <filesystem>
#include <fstream>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// Wednesday, 9 September 2026, 10:08:42 in Berlin.
constexpr Date morning = Date::fromUnixSeconds(1'788'941'322);

struct UsageCase {
  const char* name;
  ClaudeUsageReading reading;
};

ClaudeUsageReading tokens(std::int64_t count, ClaudeUsageScope scope,
                          std::optional<std::int64_t> budget = {}) {
  ClaudeUsageReading reading;
  reading.hasRead = true;
  reading.settings = {ClaudeUsageShows::tokens, scope, budget};
  reading.totals.tokens = count;
  return reading;
}

ClaudeUsageReading limit(ClaudeUsageShows shows, double used, double secondsLeft) {
  auto reading = tokens(0, ClaudeUsageScope::today);
  reading.settings.shows = shows;
  reading.isConnected = true;
  const ClaudeUsageWindow window{used, morning + secondsLeft};
  reading.limits = ClaudeUsageLimits{window, window, "max", morning};
  return reading;
}

std::vector<UsageCase> usageCases() {
  using Shows = ClaudeUsageShows;
  using Scope = ClaudeUsageScope;
  auto waiting = limit(Shows::fiveHourLimit, 0, 0);
  waiting.limits.reset();
  auto notConnected = waiting;
  notConnected.isConnected = false;
  auto absent = tokens(0, Scope::today);
  absent.isAvailable = false;
  return {{"reading", {}},
          {"none", tokens(0, Scope::block)},
          {"999", tokens(999, Scope::today)},
          {"12.3k", tokens(12'345, Scope::today)},
          {"99.9k", tokens(99'949, Scope::block)},
          {"250k", tokens(250'000, Scope::week)},
          {"3.4M", tokens(3'400'000, Scope::today)},
          {"5210M", tokens(5'210'000'000, Scope::week)},
          {"100.0k", tokens(99'999, Scope::today)},
          {"budget", tokens(3'400'000, Scope::today, 5'000'000)},
          {"99.9k of", tokens(99'949, Scope::today, 250'000)},
          {"100.0k of", tokens(99'999, Scope::today, 100'000)},
          {"5210M of", tokens(5'210'000'000, Scope::week, 9'000'000'000)},
          {"over", tokens(7'400'000, Scope::today, 5'000'000)},
          {"5 h 0", limit(Shows::fiveHourLimit, 0, 17'900)},
          {"5 h 42", limit(Shows::fiveHourLimit, 42, 8000)},
          {"5 h 85", limit(Shows::fiveHourLimit, 85, 2500)},
          {"7 d 100", limit(Shows::weeklyLimit, 100, 273'600)},
          {"5 h 999", limit(Shows::fiveHourLimit, 2000, 17'900)},
          {"reset", limit(Shows::fiveHourLimit, 97, -5)},
          {"waiting", waiting},
          {"not conn.", notConnected},
          {"absent", absent}};
}

GallerySheet sheetOf(std::initializer_list<int> spans) {
  GallerySheet sheet;
  for (const int span : spans) {
    for (const auto& usage : usageCases())
      sheet.push_back({usage.name, span, [usage](const TileSize& size) {
                         return size.isWide() ? claudeUsageWideTile(usage.reading, morning, size)
                                              : claudeUsageTileIcon(usage.reading, morning, size);
                       }});
  }
  return sheet;
}

/// A home with logs, limits and a desktop around it, for as long as the gallery runs.
struct UsageStand {
  UsageStand(ClaudeUsageSettings settings, bool hasClaude, bool isConnected, bool hasPayload)
      : platform(morning),
        home(fs::temp_directory_path() / ("tavrin-gallery-" + UUID::random().text())) {
    platform.files.home = home;
    platform.files.support = home / "support";
    if (hasClaude)
      writeLogs();
    if (isConnected)
      ClaudeUsageBridge(platform.files).connect();
    if (hasPayload)
      std::ofstream(ClaudeUsageBridge(platform.files).payloadURL())
          << R"({"rate_limits":{"five_hour":{"used_percentage":41.6,"resets_at":1788950000},)"
             R"("seven_day":{"used_percentage":88,"resets_at":1789200000}},"subscription_type":"max"})";
    model = std::make_unique<ClaudeUsageModel>(platform.fakeClock, platform.loop, platform.files,
                                               DockWidget({}, "Claude Usage", 1, settings, 1));
    platform.loop.runBackground();
    model->readDays();
    platform.loop.runBackground();
  }
  ~UsageStand() {
    std::error_code ignored;
    fs::remove_all(home, ignored);
  }
  void writeLogs() const {
    test::UsageLogs logs(home / ".claude", 5);
    const char* folders[] = {"-home-ann-tavrin", "-home-ann-work-a-very-long-project-name-of-it",
                             "-home-ann-notes",  "-srv-build",
                             "-home-ann-dots",   "-home-ann-six"};
    for (int i = 0; i < 6; ++i) {
      Date time = morning - 3600.0 * (6 - i);
      test::append(logs.file(folders[i], "a"), logs.session(time, 60 / (i + 1)));
    }
    for (int day = 1; day < 30; ++day) {
      Date time = morning - 86'400.0 * day;
      if (day % 7 > 1)
        test::append(logs.file(folders[0], "days"), logs.session(time, 5 + day * 7 % 40));
    }
  }

  test::FakePlatform platform;
  fs::path home;
  std::unique_ptr<ClaudeUsageModel> model;
};

GalleryPanel usagePanel(const char* name, ClaudeUsageSettings settings, bool hasClaude,
                        bool isConnected, bool hasPayload) {
  return {name, claudeUsageTint, [=](const PanelAppearance& look) {
            static std::deque<UsageStand> stands;
            auto& stand = stands.emplace_back(settings, hasClaude, isConnected, hasPayload);
            return new ClaudeUsagePanelView(
                look, *stand.model, [](auto) {}, [] {});
          }};
}

} // namespace

GallerySheet usageGallery() {
  return sheetOf({1});
}
GallerySheet usageWideGallery() {
  return sheetOf({2, 4});
}

GalleryPanels usagePanels() {
  const ClaudeUsageSettings today;
  const ClaudeUsageSettings budget{ClaudeUsageShows::tokens, ClaudeUsageScope::week, 20'000'000};
  return {
      usagePanel("plain", today, true, false, false),
      usagePanel("limits", budget, true, true, true),
      usagePanel("limits, no budget", today, true, true, true),
      usagePanel("waiting", today, true, true, false),
      usagePanel("absent", today, false, false, false),
  };
}

const GalleryEntry usageEntries[] = {
    {"usage", usageGallery}, {"usage-wide", usageWideGallery}, {"usage-panels", usagePanels}};

} // namespace tavrin
