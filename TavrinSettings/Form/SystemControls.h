#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinSettings/Form/Picker.h"

namespace tavrin {

/// Pickers of what the system has.
FormControl* makeTimeZoneControl(const FieldInfo& field, const FormServices& services);
/// One control over a place's name and coordinates, which stand beside it in its record.
FormControl* makeCityControl(const FieldInfo& field, const FormServices& services);
/// Reminder lists, players, network links.
FormControl* makeSystemChoiceControl(const FieldInfo& field, const FormServices& services);
FormControl* makeApplicationActionControl(const FieldInfo& field, const FormServices& services);

/// An application as lists and layouts keep it.
AppEntry entryOf(const ApplicationInfo& app);
/// The applications that menus show, with their icons; each item holds an AppEntry.
PickerSource applicationsSource(const FormServices& services);

/// Accounts with their calendars, ticked where they are read.
class CalendarsControl : public FormControl {
public:
  CalendarsControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;
  bool isWide() const override { return true; }

private:
  void ask();
  void fill();
  void toggle(int row);

  const FormServices& services_;
  CalendarSelection selection_;
  std::vector<CalendarAccount> accounts_;
  bool hasAsked_ = false;
  bool hasAnswer_ = false;
  TokenPtr asking_;
  PanelList* list_;
  class PanelText* words_;
};

} // namespace tavrin
