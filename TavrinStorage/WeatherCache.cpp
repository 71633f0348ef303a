#include "TavrinStorage/WeatherCache.h"

#include "TavrinPlatform/Files/AtomicFile.h"

namespace tavrin {
namespace {

constexpr std::size_t maximumSize = 64 * 1024;

} // namespace

std::optional<CachedWeather> WeatherCache::read() const {
  try {
    if (const auto text = readFile(file_, maximumSize))
      return decode<CachedWeather>(JSONValue::parse(*text));
  } catch (const std::runtime_error&) {
    // A reading will be fetched.
  }
  return std::nullopt;
}

void WeatherCache::write(const CachedWeather& weather) const {
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  try {
    writeJSONFile(file_, encode(weather), FileAccess::ownerOnly);
  } catch (const std::runtime_error&) {
    // The next start waits for the network.
  }
}

} // namespace tavrin
