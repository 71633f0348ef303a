#include "TavrinCore/Profiles/ProfileTransfer.h"
#include "TavrinCore/Profiles/WorkspaceHotkeys.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Whatever can be read is written so that it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  try {
    const auto file = decode<ProfilesFile>(
        JSONValue::parse(std::string_view(reinterpret_cast<const char*>(bytes), size)));
    const auto written = encode(file);
    if (encode(decode<ProfilesFile>(JSONValue::parse(written.prettyPrinted()))) != written) {
      std::fprintf(stderr, "a written file reads otherwise\n");
      std::abort();
    }
    WorkspaceHotkeys::bindings(file.profiles, WorkspaceHotkeys::defaultModifiers);
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
