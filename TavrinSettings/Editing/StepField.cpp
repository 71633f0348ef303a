#include "TavrinSettings/Editing/StepField.h"

#include <optional>

namespace tavrin {
namespace {

/// No value where it is no single part that differs.
std::optional<std::string> changedPart(const JSONValue& before, const JSONValue& after);

std::optional<std::string> changedElement(const JSONValue::Array& before,
                                          const JSONValue::Array& after) {
  std::optional<std::size_t> changed;
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (before[i] == after[i])
      continue;
    if (changed)
      return {};
    changed = i;
  }
  if (!changed)
    return std::string();
  const auto part = changedPart(before[*changed], after[*changed]);
  return part ? std::optional("/" + std::to_string(*changed) + *part) : std::nullopt;
}

std::optional<std::string> changedMember(const JSONValue& before, const JSONValue::Object& after) {
  std::string changed;
  for (const auto& [key, value] : after) {
    const auto* was = before.member(key);
    if (was != nullptr && *was == value)
      continue;
    const auto part = changedPart(was == nullptr ? JSONValue() : *was, value);
    if (!part)
      return {};
    changed += "/" + key + *part;
  }
  return changed;
}

std::optional<std::string> changedPart(const JSONValue& before, const JSONValue& after) {
  if (const auto* elements = after.array()) {
    static const JSONValue::Array none;
    const auto* known = before.array() != nullptr ? before.array() : &none;
    return known->size() == elements->size() ? changedElement(*known, *elements) : std::nullopt;
  }
  if (const auto* members = after.object(); members != nullptr && before.object() != nullptr)
    return changedMember(before, *members);
  return std::string();
}

} // namespace

std::string stepField(const SettingValue& value) {
  const auto part = value.before ? changedPart(*value.before, value.value) : std::string();
  return part ? value.path + *part : std::string();
}

} // namespace tavrin
