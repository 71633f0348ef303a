#pragma once

#include "TavrinCore/Text/Texts.h"

#include <stdexcept>

namespace tavrin {

/// A program that needs a display was started where none answers. `what()` is the whole sentence.
class NoDisplay : public std::runtime_error {
public:
  NoDisplay() : std::runtime_error(translated("There is no display to open the window on.")) {}
};

} // namespace tavrin
