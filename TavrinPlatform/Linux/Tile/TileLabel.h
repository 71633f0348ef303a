#pragma once

namespace tavrin {

/// What a tile is called, and what it shows.
template <class String> struct TileLabel {
  enum class Change { none, value, name };

  String name;
  String value;

  Change set(const String& newName, const String& newValue) {
    const Change change = newName != name     ? Change::name
                          : newValue != value ? Change::value
                                              : Change::none;
    name = newName;
    value = newValue;
    return change;
  }
};

} // namespace tavrin
