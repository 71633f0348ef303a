#include "TavrinCore/Kinds/Fans/SMCValue.h"

#include <cmath>
#include <cstdlib>

/// The first four bytes are a type, the rest a value. What is read and can be written, reads the
/// same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  if (size < 4)
    return 0;
  const std::string type(bytes, bytes + 4);
  if (SMCValue::name(*SMCValue::code(type)) != type)
    std::abort();
  const SMCValue value{type, {bytes + 4, bytes + size}};
  const auto number = value.number();
  if (!number || std::isnan(*number))
    return 0;
  const auto written = SMCValue::encoding(*number, type);
  if (written && SMCValue{type, *written}.number() != number)
    std::abort();
  return 0;
}
