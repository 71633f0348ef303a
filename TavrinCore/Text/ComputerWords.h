#pragma once

#include "TavrinCore/Text/Texts.h"

#include <string>
#include <string_view>

namespace tavrin {

/// What sentences call the computer they are read on, and the system that runs it.
struct ComputerWords {
  /// After "this", "the" and "your". Like the others in English.
  std::string_view computer;
  /// Within a sentence, and as its first word.
  std::string_view system;
  std::string_view systemFirst;
};

inline constexpr ComputerWords macComputerWords{"Mac", "macOS", "macOS"};
inline constexpr ComputerWords desktopComputerWords{marked("computer"), marked("the desktop"),
                                                    marked("The desktop")};

/// Those of the platform this is built for; the build picks them.
const ComputerWords& computerWords();

/// `sentence` with every "{Mac}" and "{macOS}" in it in `words`: "This {Mac} has no fans."
std::string localSentence(std::string_view sentence, const ComputerWords& words = computerWords());

} // namespace tavrin
