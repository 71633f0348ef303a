#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Calendar/CalendarModel.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"

namespace tavrin {

class CalendarWidgetController final : public BasicWidgetController {
public:
  CalendarWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return calendarTint; }
  void widgetChanged() override;

private:
  CalendarReading reading() const;

  CalendarModel model_;
};

class RemindersWidgetController final : public BasicWidgetController {
public:
  RemindersWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return reminderTint; }
  void widgetChanged() override;

private:
  ReminderReading reading() const;

  ReminderModel model_;
};

} // namespace tavrin
