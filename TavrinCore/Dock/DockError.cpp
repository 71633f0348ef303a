#include "TavrinCore/Dock/DockError.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"

namespace tavrin {
DockError::DockError(Case kind, const std::filesystem::path& file, std::string detail,
                     const std::string& sentence)
    : std::runtime_error(sentence), case_(kind), file_(file), detail_(std::move(detail)) {}

DockError DockError::ofTile(std::string_view section, std::size_t number,
                            std::string_view label) const {
  DockError error = *this;
  const TextPlaces places = {{"number", number}, {"section", section}, {"label", label}};
  error.tile_ = label.empty() ? translated("tile {number} of {section}", places)
                              : translated("tile {number} of {section}, \"{label}\"", places);
  return error;
}

DockError DockError::plistNotFound(const std::filesystem::path& file) {
  return {Case::plistNotFound, file, "",
          translated("Failed to locate dock plist at {path}", {{"path", file.string()}})};
}

DockError DockError::plistReadFailed(const std::filesystem::path& file, std::string underlying) {
  const auto sentence =
      failure(translated("read dock plist at {path}", {{"path", file.string()}}), underlying);
  return {Case::plistReadFailed, file, std::move(underlying), sentence};
}

DockError DockError::plistMalformed(const std::filesystem::path& file, std::string underlying) {
  const auto sentence =
      failure(translated("decode dock plist at {path}", {{"path", file.string()}}), underlying);
  return {Case::plistMalformed, file, std::move(underlying), sentence};
}

DockError DockError::plistWriteFailed(const std::filesystem::path& file, std::string underlying) {
  const auto sentence =
      failure(translated("write dock plist at {path}", {{"path", file.string()}}), underlying);
  return {Case::plistWriteFailed, file, std::move(underlying), sentence};
}

DockError DockError::unsupportedItemType(std::string type) {
  const auto sentence = failure(translated("handle dock item of type {type}", {{"type", type}}),
                                translated("it is not supported"));
  return {Case::unsupportedItemType, {}, std::move(type), sentence};
}

DockError DockError::dockReloadFailed(std::string reason) {
  const auto sentence = failure(marked("reload dock"), reason);
  return {Case::dockReloadFailed, {}, std::move(reason), sentence};
}

DockError DockError::fileNotFound(const std::filesystem::path& path) {
  return {Case::fileNotFound, path, "",
          translated("Failed to find file at {path}", {{"path", path.string()}})};
}

DockError DockError::profileNotFound(std::string id) {
  const auto sentence = translated("Failed to find profile with id {id}", {{"id", id}});
  return {Case::profileNotFound, {}, std::move(id), sentence};
}

DockError DockError::noBackupAvailable() {
  return {Case::noBackupAvailable,
          {},
          "",
          translated("Cannot undo because there is no Dock backup yet")};
}

} // namespace tavrin
