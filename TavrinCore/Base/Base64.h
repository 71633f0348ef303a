#pragma once

#include "TavrinCore/Base/Data.h"

namespace tavrin {

/// Appends `data` as `Data::base64` writes it.
void appendBase64(std::string& out, const Data& data);

} // namespace tavrin
