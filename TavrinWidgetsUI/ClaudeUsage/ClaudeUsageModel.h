#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLimits.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/RunLoop.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace tavrin {

/// What Claude Code used, as tile and panel show it. Logs and limits are read off the main thread,
/// at the start and once a minute.
class ClaudeUsageModel {
public:
  static constexpr double refreshInterval = 60;

  ClaudeUsageModel(Clock& clock, RunLoop& runLoop, const FileManager& fileManager,
                   DockWidget widget);
  ~ClaudeUsageModel();
  ClaudeUsageModel(const ClaudeUsageModel&) = delete;
  ClaudeUsageModel& operator=(const ClaudeUsageModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// Does not call `onChange`.
  void setWidget(const DockWidget& widget) { widget_ = widget; }
  /// Those of the widget; the defaults when it is of another kind.
  ClaudeUsageSettings settings() const { return widget_.kind.settings<ClaudeUsageSettings>(); }

  /// Of the widget's scope.
  ClaudeUsageTotals totals() const;
  const ClaudeUsageByScope& byScope() const { return reading_.byScope; }
  struct Day {
    Date start;
    std::int64_t tokens = 0;
    bool operator==(const Day&) const = default;
  };
  /// The last thirty days, today last; empty until they have been read.
  const std::vector<Day>& days() const { return days_; }
  /// Reads the thirty days, which only the panel shows; nothing is kept of their messages.
  void readDays();
  const std::optional<ClaudeUsageLimits>& limits() const { return reading_.limits; }
  /// The status line is ours.
  bool isConnected() const { return reading_.isConnected; }
  /// Claude Code's folder exists.
  bool isAvailable() const { return reading_.isAvailable; }
  /// All of the above was read once.
  bool hasRead() const { return hasRead_; }
  /// The moment of the reading that is shown.
  Date now() const { return reading_.now; }

  /// Reads now; does nothing while a reading is under way.
  void refresh();
  /// Makes the status line ours, or gives it back, and reads; off the main thread too.
  void setConnected(bool isConnected);
  /// Why that failed, a sentence; empty where it did not, and again after the next reading.
  const std::string& bridgeError() const { return reading_.bridgeError; }

  /// Another reading is shown.
  std::function<void()> onChange;

private:
  struct Reading {
    ClaudeUsageByScope byScope;
    std::optional<ClaudeUsageLimits> limits;
    bool isConnected = false;
    bool isAvailable = true;
    std::string bridgeError;
    Date now;
  };
  struct Reader;

  static bool looksAlike(const Reading& first, const Reading& second);
  void show(Reading reading);

  Clock& clock_;
  RunLoop& runLoop_;
  DockWidget widget_;
  Reading reading_;
  std::vector<Day> days_;
  bool isReadingDays_ = false;
  bool hasRead_ = false;
  bool isReading_ = false;
  /// For the next reading.
  std::optional<bool> connecting_;
  std::filesystem::path root_;
  /// Shared with the reading under way, which may outlive this.
  std::shared_ptr<Reader> reader_;
  Lifetime alive_;
  TokenPtr timer_;
};

} // namespace tavrin
