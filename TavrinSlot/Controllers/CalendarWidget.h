#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Calendar/CalendarModel.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"

namespace tavrin {

class CalendarWidgetController final : public KindController<CalendarSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return calendarTint; }
  void widgetChanged() override;

private:
  CalendarReading reading() const;

  std::optional<CalendarModel> model_;
};

class RemindersWidgetController final : public KindController<ReminderSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return reminderTint; }
  void widgetChanged() override;

private:
  ReminderReading reading() const;

  std::optional<ReminderModel> model_;
};

} // namespace tavrin
