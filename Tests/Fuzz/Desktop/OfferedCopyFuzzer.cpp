#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Linux/Pasteboard/CapturePlan.h"
#include "TavrinPlatform/Linux/Pasteboard/Latin1.h"
#include "TavrinPlatform/Linux/Pasteboard/OfferedTypes.h"
#include "Tests/Fuzz/Require.h"

#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

namespace {

using namespace tavrin;

constexpr const char* known[] = {CapturePlan::passwordHint,
                                 Pasteboard::filesType,
                                 Pasteboard::tiffType,
                                 Pasteboard::pngType,
                                 Pasteboard::textType,
                                 "UTF8_STRING",
                                 "STRING",
                                 "text/html"};

bool has(const std::vector<std::string>& types, std::string_view type) {
  return std::ranges::find(types, type) != types.end();
}

void checkBytes(const std::string& bytes) {
  const std::string text = utf8FromSTRING(bytes, false);
  require(isUTF8(text));
  require(isUTF8(bytes) ? text == bytes : latin1FromUTF8(text) == bytes);
  utf8FromSTRING(bytes, true);
  for (const auto& path : pathsOfURIList(bytes)) {
    require(path.is_absolute() && path.string().find('\0') == std::string::npos);
    require(pathOfFileURL(fileURL(path.string())) == path.string());
    require(pathOfText(pathText(path)) == path);
  }
  if (const auto path = pathOfText(bytes, "/home/me"))
    require(path->is_absolute());
  std::vector<Pasteboard::Format> formats = {
      {Pasteboard::filesType, std::make_shared<const Data>(Data::fromText(bytes)), bytes.size()}};
  addForFileManagers(formats);
  require(formats.size() == 2 && formats.back().data->view().starts_with("copy"));
}

} // namespace

/// An owner may offer anything and answer anything: what is kept stays within its bounds, and a
/// hint of a password that does not say otherwise makes the copy one to forget.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  CapturePlan plan;
  Pasteboard::Limits limits;
  limits.textBytes = data.ConsumeIntegralInRange<std::size_t>(1, 64);
  limits.imageBytes = data.ConsumeIntegralInRange<std::size_t>(1, 64);
  plan.begin(1, "copy", limits);
  std::vector<std::string> types;
  for (int left = data.ConsumeIntegralInRange<int>(0, 8); left > 0; --left)
    types.push_back(data.ConsumeBool() ? data.PickValueInArray(known)
                                       : data.ConsumeRandomLengthString(16));
  const bool isHinted = has(types, CapturePlan::passwordHint);
  const bool isMarked = has(types, Pasteboard::transientType);
  const bool isDoubtful = data.ConsumeBool();
  plan.offered(types, isDoubtful);
  bool isDenied = false;
  std::string last;
  while (const auto* wish = plan.wish()) {
    require(!wish->target.empty() && plan.bound(*wish) > 0);
    if (data.ConsumeBool()) {
      plan.missed();
      continue;
    }
    last = data.ConsumeRandomLengthString(plan.bound(*wish));
    const std::size_t whole =
        last.size() + (data.ConsumeBool() ? data.ConsumeIntegral<std::uint16_t>() : 0U);
    isDenied |= wish->type == CapturePlan::passwordHint && whole > 0 &&
                whole <= plan.bound(*wish) && last.find("secret") == std::string::npos;
    plan.arrived(last, whole);
    checkBytes(last);
  }
  const auto capture = plan.finish();
  require(has(capture.types, Pasteboard::transientType) ==
          (isMarked || ((isHinted || isDoubtful) && !isDenied)));
  for (const auto& format : capture.formats)
    require(format.size > 0 && (!format.data || format.data->bytes.size() <= format.size));
  return 0;
}
