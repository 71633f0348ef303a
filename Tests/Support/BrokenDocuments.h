#pragma once

#include "TavrinCore/Base/JSONValue.h"

#include <functional>
#include <vector>

namespace tavrin::test {

inline const std::vector<JSONValue>& wrongTypes() {
  static const std::vector<JSONValue> values{
      nullptr, true, -7.5, "wrong", JSONValue::Array{1}, JSONValue::Object{{"a", 1}}};
  return values;
}

/// Puts a wrong value at every place of a document in turn.
inline void breakEachNode(const JSONValue& document,
                          const std::function<void(const JSONValue&)>& check,
                          const std::vector<JSONValue>& wrongValues = wrongTypes()) {
  const std::function<void(JSONValue&, JSONValue&)> visit = [&](JSONValue& root, JSONValue& node) {
    const JSONValue original = node;
    for (const JSONValue& wrong : wrongValues) {
      node = wrong;
      check(root);
    }
    node = original;
    if (auto* items = node.array())
      for (auto& item : *items)
        visit(root, item);
    if (auto* members = node.object())
      for (auto& [unused, member] : *members)
        visit(root, member);
  };
  JSONValue root = document;
  visit(root, root);
}

} // namespace tavrin::test
