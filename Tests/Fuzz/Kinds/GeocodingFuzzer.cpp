#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

namespace {

bool isLabel(const std::string& text) {
  return !text.empty() && text.size() <= 450 && isUTF8(text);
}

} // namespace

/// Every place that an answer names can be shown, chosen and asked about.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view data(reinterpret_cast<const char*>(bytes), size);
  const auto places = WeatherService::places(data);
  if (places.size() > WeatherService::searchCount)
    std::abort();
  for (const auto& place : places)
    if (!isLabel(place.name) || (place.region && !isLabel(*place.region)) || place.id().empty() ||
        !WeatherService::forecastURL(place.latitude, place.longitude, WeatherUnit::celsius))
      std::abort();
  // Typed text is as free as an answer.
  if (const auto url = WeatherService::searchURL(data, "en"))
    for (const char c : *url)
      if (c <= ' ' || c > '~')
        std::abort();
  return 0;
}
