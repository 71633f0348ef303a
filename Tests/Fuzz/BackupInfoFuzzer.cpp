#include "TavrinCore/Base/ISO8601.h"
#include "TavrinStorage/Dock/WorkspaceBackupStore.h"
#include "TavrinStorage/Timestamp.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// A note that is accepted has a date that can be written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  try {
    const auto info =
        WorkspaceBackupInfo::parse(std::string_view(reinterpret_cast<const char*>(bytes), size));
    const auto date = dateFromISO8601(info.date);
    if (!date || !dateFromISO8601(iso8601(*date)) || fileStamp(*date).size() != fileStampLength) {
      std::fprintf(stderr, "a date that was read cannot be written: %s\n", info.date.c_str());
      std::abort();
    }
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
