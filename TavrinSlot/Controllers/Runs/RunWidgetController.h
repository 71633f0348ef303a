#pragma once

#include "TavrinCore/Kinds/Runs/TickSchedule.h"
#include "TavrinSlot/Base/BasicWidgetController.h"
#include "TavrinSlot/Controllers/Runs/EndNotification.h"

#include <vector>

namespace tavrin {

/// What the controllers of a run share: it is kept over restarts, ticks while it runs, rings when
/// it ends and leaves a notice in case this process has gone by then.
class RunWidgetController : public BasicWidgetController {
protected:
  /// `name` and `event` identify the notice, such as "timer" and "finished", where the bundle has
  /// no identifier of its own.
  RunWidgetController(const SlotContext& context, DockWidget widget, const std::string& name,
                      const std::string& event);

  /// What the tile shows beside the progress: drawn again as soon as it differs.
  struct Shown {
    std::int64_t seconds = 0;
    std::string state;
    bool operator==(const Shown&) const = default;
  };
  /// The end that a running run is heading for, and what its notice says.
  struct End {
    std::optional<Date> date;
    std::string notice;
  };

  virtual bool isRunning() const = 0;
  virtual Shown shown() const = 0;
  virtual End end() const = 0;
  /// Stores the run.
  virtual void saveRun() = 0;
  /// Brings the model's `now` to the clock.
  virtual void readClock() = 0;
  /// Ends a run that is over, and rings. Whether it was over.
  virtual bool finishIfOver() = 0;

  void start() override;
  void stop() override;

  /// To be called after every change of the run, and once when it has been read.
  void runChanged();
  /// The widget's name or settings, or the clock, changed under the run.
  void scheduleEndNotification();
  /// Plays `sound` and asks for attention until the user does something.
  void ring(const std::string& sound);

  /// Another time or day than the ticks led to: the clock was set, the computer woke, a day began.
  virtual void timeJumped();
  void panelWillOpen() override;
  void tileWillBeDrawn() override { lastShown_ = shown(); }

private:
  void follow(const TickSchedule& schedule);
  void tick();
  void renderTile(bool force);
  void userCame();

  EndNotification endNotification_;
  TokenPtr ticker_;
  std::vector<TokenPtr> observations_;
  /// What the tile shows, whoever had it drawn.
  std::optional<Shown> lastShown_;
  bool asksForAttention_ = false;
};

} // namespace tavrin
