#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"

#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageSource.h"

namespace tavrin {

struct ClaudeUsageModel::Reader {
  explicit Reader(const FileManager& fileManager)
      : source(fileManager.homeFolder() / ".claude"), bridge(fileManager) {}

  void read(Date now, std::optional<bool> connecting) {
    const Calendar calendar;
    reading = {};
    reading.now = now;
    if (connecting)
      reading.bridgeError = connect(*connecting);
    reading.isAvailable = source.isAvailable();
    reading.isConnected = bridge.isConnected();
    reading.limits = bridge.limits();
    const auto& entries = source.entries(earliestStart(now, calendar));
    reading.byScope = ClaudeUsage::totalsByScope(entries, now, calendar);
  }

  /// What went wrong.
  std::string connect(bool isConnected) const {
    try {
      if (isConnected)
        bridge.connect();
      else
        bridge.disconnect();
      return {};
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }

  ClaudeUsageSource source;
  ClaudeUsageBridge bridge;
  Reading reading;
};

ClaudeUsageModel::ClaudeUsageModel(Clock& clock, RunLoop& runLoop, const FileManager& fileManager,
                                   DockWidget widget)
    : clock_(clock), runLoop_(runLoop), widget_(std::move(widget)),
      root_(fileManager.homeFolder() / ".claude"), reader_(std::make_shared<Reader>(fileManager)),
      timer_(runLoop.repeat(refreshInterval, [this] { refresh(); })) {
  reading_.now = clock.now();
  refresh();
}

ClaudeUsageModel::~ClaudeUsageModel() = default;

ClaudeUsageTotals ClaudeUsageModel::totals() const {
  const auto found = reading_.byScope.find(settings().scope);
  return found == reading_.byScope.end() ? ClaudeUsageTotals{} : found->second;
}

void ClaudeUsageModel::refresh() {
  if (isReading_)
    return;
  isReading_ = true;
  runLoop_.background(
      [reader = reader_, now = clock_.now(), connecting = std::exchange(connecting_, {})] {
        reader->read(now, connecting);
      },
      alive_,
      [this] {
        isReading_ = false;
        show(std::move(reader_->reading));
        if (connecting_)
          refresh();
      });
}

void ClaudeUsageModel::readDays() {
  if (std::exchange(isReadingDays_, true))
    return;
  const auto days = std::make_shared<std::vector<Day>>();
  runLoop_.background(
      [days, root = root_, now = clock_.now()] {
        const auto starts = ClaudeUsage::dayStarts(now, Calendar(), ClaudeUsage::chartDays);
        ClaudeUsageSource source(root);
        const auto totals = ClaudeUsage::totalsBetween(source.entries(starts.front()), starts);
        for (std::size_t i = 0; i < starts.size(); ++i)
          days->push_back({starts[i], totals[i].tokens});
      },
      alive_,
      [this, days] {
        isReadingDays_ = false;
        if (days_ == *days)
          return;
        days_ = std::move(*days);
        if (onChange)
          onChange();
      });
}

void ClaudeUsageModel::setConnected(bool isConnected) {
  connecting_ = isConnected;
  refresh();
}

void ClaudeUsageModel::show(Reading reading) {
  const bool isSame = hasRead_ && looksAlike(reading, reading_);
  reading_ = std::move(reading);
  hasRead_ = true;
  if (!isSame && onChange)
    onChange();
}

bool ClaudeUsageModel::looksAlike(const Reading& first, const Reading& second) {
  const auto shown = [](const Reading& reading) {
    std::optional<ClaudeUsageLimits> limits = reading.limits;
    std::vector<std::optional<std::string>> left;
    if (limits) {
      limits->readAt = {};
      for (const auto& window : {limits->fiveHour, limits->sevenDay})
        left.push_back(window ? ClaudeUsageLimitsFormat::untilReset(window->resetsAt, reading.now)
                              : std::nullopt);
    }
    return std::tuple(limits, left, reading.isConnected, reading.isAvailable, reading.bridgeError);
  };
  return first.byScope == second.byScope && shown(first) == shown(second);
}

} // namespace tavrin
