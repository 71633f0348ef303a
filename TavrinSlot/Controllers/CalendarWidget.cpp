#include "TavrinSlot/Controllers/CalendarWidget.h"

#include "TavrinWidgetsUI/Calendar/CalendarPanelView.h"

namespace tavrin {
void CalendarWidgetController::start() {
  model_.emplace(platform().calendars(), platform().clock(), platform().runLoop(),
                 platform().workspace(), settings());
  model_->onChange = [this] { refresh(); };
  model_->start();
}

void CalendarWidgetController::stop() {
  model_.reset();
}

void CalendarWidgetController::widgetChanged() {
  model_->setSettings(settings());
}

CalendarReading CalendarWidgetController::reading() const {
  return {model_->settings(), model_->state(), model_->events(), model_->now(), model_->calendar()};
}

AnyView CalendarWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? calendarWideTile(reading(), size) : calendarTileIcon(reading(), size);
}

PanelView* CalendarWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new CalendarPanelView(appearance,
                               {[this] { return widget().name; }, [this] { return reading(); },
                                [this] { model_->requestAccess(); },
                                [this] { model_->openApplication(); }, context().onEdit});
}

void RemindersWidgetController::start() {
  model_.emplace(platform().calendars(), platform().clock(), platform().runLoop(),
                 platform().workspace(), settings());
  model_->onChange = [this] { refresh(); };
  model_->start();
}

void RemindersWidgetController::stop() {
  model_.reset();
}

void RemindersWidgetController::widgetChanged() {
  model_->setSettings(settings());
}

ReminderReading RemindersWidgetController::reading() const {
  return {model_->settings(), model_->state(), model_->reminders(), model_->now(),
          model_->calendar()};
}

AnyView RemindersWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? reminderWideTile(reading(), size) : reminderTileIcon(reading(), size);
}

PanelView* RemindersWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ReminderPanelView(appearance,
                               {[this] { return widget().name; }, [this] { return reading(); },
                                [this] { model_->requestAccess(); },
                                [this](const std::string& id) { model_->toggle(id); },
                                [this] { model_->openApplication(); }, context().onEdit});
}

} // namespace tavrin
