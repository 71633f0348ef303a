#pragma once

#include "TavrinCore/Dock/PropertyList.h"

#include <filesystem>
#include <optional>

namespace tavrin {

/// The root dictionary of a property list file, XML or binary; no value without a file. Throws
/// DockError: plistReadFailed, plistMalformed.
std::optional<PropertyList::Dictionary> readPlistRoot(const std::filesystem::path& file);

/// Replaces the file, as XML. Throws DockError (plistWriteFailed).
void writePlistRoot(const std::filesystem::path& file, PropertyList::Dictionary root);

} // namespace tavrin
