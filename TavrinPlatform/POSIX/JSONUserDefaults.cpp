#include "TavrinPlatform/POSIX/JSONUserDefaults.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <utility>

namespace tavrin {

namespace fs = std::filesystem;

namespace {

/// Seconds between two tries to write.
constexpr double retryInterval = 5;

} // namespace

JSONUserDefaults::JSONUserDefaults(fs::path file, LogSink& log, RunLoop& runLoop)
    : file_(std::move(file)), log_(log, "defaults"), runLoop_(runLoop) {}

JSONUserDefaults::~JSONUserDefaults() {
  if (isUnsaved_)
    save();
}

std::optional<JSONValue> JSONUserDefaults::value(const std::string& key) const {
  const auto found = values().find(key);
  if (found == values().end())
    return std::nullopt;
  return found->second;
}

void JSONUserDefaults::set(const std::string& key, const JSONValue& value) {
  const auto found = values().find(key);
  if (found != values().end() && found->second == value && !isUnsaved_)
    return;
  values().insert_or_assign(key, value);
  save();
}

void JSONUserDefaults::remove(const std::string& key) {
  if (values().erase(key) > 0)
    save();
}

JSONValue::Object& JSONUserDefaults::values() const {
  if (values_)
    return *values_;
  values_.emplace();
  try {
    auto document = readJSONFile(file_);
    if (!document)
      return *values_;
    if (auto* object = document->object()) {
      values_ = std::move(*object);
      return *values_;
    }
    log_.error(
        failure(translated("read {file}", {{"file", file_.string()}}), "it holds no JSON object"));
  } catch (const FileError& error) {
    log_.error(error.what());
  }
  std::error_code ignored;
  fs::rename(file_, file_.string() + ".damaged", ignored);
  return *values_;
}

void JSONUserDefaults::save() {
  try {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    fs::permissions(file_.parent_path(), fs::perms::owner_all, error);
    writeJSONFile(file_, values(), FileAccess::ownerOnly);
    isUnsaved_ = false;
    retry_.reset();
  } catch (const FileError& error) {
    if (!std::exchange(isUnsaved_, true))
      log_.error(error.what());
    retry_ = runLoop_.after(retryInterval, [this] { save(); });
  }
}

} // namespace tavrin
