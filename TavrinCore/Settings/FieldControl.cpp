#include "TavrinCore/Settings/FieldControl.h"

namespace tavrin {
namespace {

std::optional<FieldControl> controlForText(const FieldInfo& field) {
  if (field.choicesBy != nullptr)
    return FieldControl::choice;
  switch (field.role) {
  case FieldRole::colour:
    return FieldControl::colour;
  case FieldRole::file:
  case FieldRole::folder:
    return FieldControl::path;
  case FieldRole::city:
    return FieldControl::city;
  case FieldRole::timeZone:
    return FieldControl::timeZone;
  case FieldRole::reminderList:
  case FieldRole::networkLink:
  case FieldRole::player:
    return FieldControl::systemChoice;
  case FieldRole::applicationAction:
    return FieldControl::applicationAction;
  case FieldRole::symbol:
    return FieldControl::symbol;
  case FieldRole::severalLines:
    return FieldControl::severalLines;
  default:
    return FieldControl::text;
  }
}

std::optional<FieldControl> controlForList(const FieldInfo& field) {
  const auto element = field.element();
  switch (element.type) {
  case FieldType::number:
  case FieldType::integer:
    return element.unit == "s" ? std::optional(FieldControl::durations) : std::nullopt;
  case FieldType::text:
    return field.role == FieldRole::file || field.role == FieldRole::folder ? FieldControl::paths
           : field.role == FieldRole::account || field.role == FieldRole::calendar
               ? FieldControl::calendars
               : FieldControl::texts;
  case FieldType::record:
    return field.role == FieldRole::application ? FieldControl::applications
                                                : FieldControl::records;
  default:
    return std::nullopt;
  }
}

} // namespace

std::optional<FieldControl> controlFor(const FieldInfo& field) {
  switch (field.type) {
  case FieldType::boolean:
    return field.isNullable ? FieldControl::threeStates : FieldControl::toggle;
  case FieldType::choice:
    return FieldControl::choice;
  case FieldType::integer:
  case FieldType::number:
    return FieldControl::number;
  case FieldType::text:
    return controlForText(field);
  case FieldType::date:
    return FieldControl::dateAndTime;
  case FieldType::record:
    return field.role == FieldRole::shortcut   ? FieldControl::shortcut
           : field.role == FieldRole::calendar ? FieldControl::calendars
                                               : FieldControl::record;
  case FieldType::list:
    return controlForList(field);
  case FieldType::uuid:
  case FieldType::data:
    return std::nullopt;
  }
  return std::nullopt;
}

bool isTakenWhole(const FieldInfo& field) {
  if (field.type != FieldType::text)
    return true;
  switch (field.role) {
  case FieldRole::link:
  case FieldRole::file:
  case FieldRole::folder:
  case FieldRole::command:
  case FieldRole::repository:
    return true;
  default:
    return false;
  }
}

bool isCoveredByAnother(const FieldInfo& field) {
  return field.role == FieldRole::latitude || field.role == FieldRole::longitude;
}

} // namespace tavrin
