#pragma once

namespace tavrin {

/// Has the toolkit's own numbers, dates and directions follow the language of the texts
/// (TavrinCore/Text/Texts.h). Once the application is made, before its first window.
void setTextLocale();

} // namespace tavrin
