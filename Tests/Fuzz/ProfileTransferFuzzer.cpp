#include "TavrinCore/Profiles/ProfileTransfer.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>

/// After an import every identifier and every name is there once, and nothing that was there went.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  try {
    const auto imported =
        ProfileTransfer::profiles(std::string_view(reinterpret_cast<const char*>(bytes), size));
    if (imported.size() > 50)
      return 0;
    const auto once = ProfileTransfer::merge(imported, {}, {"known"});
    const auto twice = ProfileTransfer::merge(imported, once, {"known"});
    std::set<std::string> ids;
    std::set<std::string> names;
    for (const auto& profile : twice) {
      ids.insert(profile.id.text());
      names.insert(profile.name);
    }
    if (twice.size() != 2 * imported.size() || ids.size() != twice.size() ||
        names.size() != twice.size() || !std::equal(once.begin(), once.end(), twice.begin())) {
      std::fprintf(stderr, "an import lost or doubled a profile\n");
      std::abort();
    }
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
