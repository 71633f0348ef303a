#include "TavrinSlot/Controllers/CalendarWidget.h"

#include "TavrinWidgetsUI/Calendar/CalendarPanelView.h"

namespace tavrin {
namespace {

template <class Settings> Settings settingsOf(const DockWidget& widget) {
  const auto* settings = widget.kind.get<Settings>();
  return settings != nullptr ? *settings : Settings{};
}

} // namespace

CalendarWidgetController::CalendarWidgetController(const SlotContext& context,
                                                   const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_(platform().calendars(), platform().clock(), platform().runLoop(),
             platform().workspace(), settingsOf<CalendarSettings>(widget)) {
  model_.onChange = [this] { refresh(); };
  renderTile();
  model_.start();
}

void CalendarWidgetController::widgetChanged() {
  model_.setSettings(settingsOf<CalendarSettings>(widget()));
}

CalendarReading CalendarWidgetController::reading() const {
  return {model_.settings(), model_.state(), model_.events(), model_.now(), model_.calendar()};
}

AnyView CalendarWidgetController::tileView(const TileSize& size) const {
  return size.isWide() ? calendarWideTile(reading(), size) : calendarTileIcon(reading(), size);
}

PanelView* CalendarWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new CalendarPanelView(appearance,
                               {[this] { return widget().name; }, [this] { return reading(); },
                                [this] { model_.requestAccess(); },
                                [this] { model_.openApplication(); }, context().onEdit});
}

RemindersWidgetController::RemindersWidgetController(const SlotContext& context,
                                                     const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_(platform().calendars(), platform().clock(), platform().runLoop(),
             platform().workspace(), settingsOf<ReminderSettings>(widget)) {
  model_.onChange = [this] { refresh(); };
  renderTile();
  model_.start();
}

void RemindersWidgetController::widgetChanged() {
  model_.setSettings(settingsOf<ReminderSettings>(widget()));
}

ReminderReading RemindersWidgetController::reading() const {
  return {model_.settings(), model_.state(), model_.reminders(), model_.now(), model_.calendar()};
}

AnyView RemindersWidgetController::tileView(const TileSize& size) const {
  return size.isWide() ? reminderWideTile(reading(), size) : reminderTileIcon(reading(), size);
}

PanelView* RemindersWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ReminderPanelView(appearance,
                               {[this] { return widget().name; }, [this] { return reading(); },
                                [this] { model_.requestAccess(); },
                                [this](const std::string& id) { model_.toggle(id); },
                                [this] { model_.openApplication(); }, context().onEdit});
}

} // namespace tavrin
