#pragma once

#include <QString>
#include <string_view>

namespace tavrin {

/// What users call one of the project's symbols; its name where it has no title.
QString symbolTitle(std::string_view name);

} // namespace tavrin
