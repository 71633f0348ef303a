#pragma once

#include "TavrinWidgetsUI/Calendar/CalendarViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelList;

class CalendarPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<CalendarReading()> reading;
    std::function<void()> requestAccess;
    std::function<void()> openCalendar;
    std::function<void()> edit;
  };
  CalendarPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

private:
  Source source_;
  PanelList* list_;
  PanelEmptyState* empty_;
};

class ReminderPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<ReminderReading()> reading;
    std::function<void()> requestAccess;
    /// Done, or open again.
    std::function<void(const std::string& id)> toggle;
    std::function<void()> openReminders;
    std::function<void()> edit;
  };
  ReminderPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

private:
  Source source_;
  PanelList* list_;
  PanelEmptyState* empty_;
};

} // namespace tavrin
