#include "TavrinCore/Base/FieldInfo.h"

namespace tavrin {

bool FieldCondition::holds(const JSONValue& record) const {
  if (key.empty())
    return true;
  const auto* other = record.member(key);
  const bool isSo =
      other == nullptr || other->isNull() ? value == "null" : other->compact() == value;
  return isSo != isNegated;
}

FieldDisplay FieldInfo::displayIn(const JSONValue& record) const {
  if (displayBy != nullptr)
    return displayBy(record);
  return display.unit.empty() ? FieldDisplay{unit, 1} : display;
}

std::vector<FieldChoice> FieldInfo::choicesIn(const JSONValue& record) const {
  if (choicesBy != nullptr)
    return choicesBy(record);
  std::vector<FieldChoice> known;
  for (std::size_t i = 0; i < choices.size(); ++i)
    known.push_back({choices[i], choiceTitles[i]});
  return known;
}

FieldInfo FieldInfo::element() const {
  FieldInfo one = *this;
  one.type = elementType.value_or(FieldType::text);
  one.isNullable = false;
  one.elementType.reset();
  if (one.type != FieldType::integer && one.type != FieldType::number)
    one.range.reset();
  return one;
}

} // namespace tavrin
