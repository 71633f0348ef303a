#include "TavrinSettings/Form/FormControl.h"

#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinSettings/Form/ListControls.h"
#include "TavrinSettings/Form/SimpleControls.h"
#include "TavrinSettings/Form/SystemControls.h"
#include "TavrinSettings/Form/ValueControls.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

ChoiceControl* makeChoice(const FieldInfo& field) {
  return new ChoiceControl(field, [field](const JSONValue& record) {
    std::vector<ChoiceControl::Choice> choices;
    for (const auto& choice : field.choicesIn(record))
      choices.emplace_back(choice.value, worded(choice.title));
    return choices;
  });
}

ChoiceControl* makeThreeStates(const FieldInfo& field) {
  return new ChoiceControl(field, [field](const JSONValue&) {
    return std::vector<ChoiceControl::Choice>{
        {{}, worded(field.absent)}, {true, worded("Yes")}, {false, worded("No")}};
  });
}

} // namespace

FormControl* makeFormControl(const FieldInfo& field, const FormServices& services) {
  const auto control = controlFor(field);
  if (!control)
    return nullptr;
  switch (*control) {
  case FieldControl::toggle:
    return new ToggleControl(field);
  case FieldControl::threeStates:
    return makeThreeStates(field);
  case FieldControl::choice:
    return makeChoice(field);
  case FieldControl::number:
    if (!field.range)
      return new TextControl(field, services);
    return new NumberControl(field);
  case FieldControl::text:
  case FieldControl::record:
    return new TextControl(field, services);
  case FieldControl::severalLines:
    return new LinesControl(field);
  case FieldControl::dateAndTime:
    return new DateControl(field);
  case FieldControl::colour:
    return new ColourControl(field, services);
  case FieldControl::symbol:
    return new SymbolControl(field);
  case FieldControl::path:
    return new PathControl(field, services);
  case FieldControl::shortcut:
    return new ShortcutControl(field);
  case FieldControl::timeZone:
    return makeTimeZoneControl(field, services);
  case FieldControl::city:
    return makeCityControl(field, services);
  case FieldControl::systemChoice:
    return makeSystemChoiceControl(field, services);
  case FieldControl::applicationAction:
    return makeApplicationActionControl(field, services);
  case FieldControl::calendars:
    return new CalendarsControl(field, services);
  case FieldControl::applications:
    return new ApplicationListControl(field, services);
  case FieldControl::durations:
  case FieldControl::paths:
  case FieldControl::texts:
    return new TextListControl(field, services);
  case FieldControl::records:
    return new RecordListControl(field, services);
  }
  return nullptr;
}

} // namespace tavrin
