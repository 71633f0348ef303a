#include "TavrinCommand/Widgets/EditForm.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinHost/HostError.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tavrin;

const Date now{800'000'000};

void require(bool holds, const char* what) {
  if (holds)
    return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

DockWidget widgetOf(const KindInfo& info) {
  return {UUID::random(), "Tea", 1, *freshKind(info.key, now), 1};
}

/// A form read back gives what it was made of.
void checkForm(const DockWidget& widget, const SettingSystem& system) {
  const auto again = widgetFromForm(widget, editForm(widget), now, system);
  require(again == widget, "a form is read as it was written");
}

} // namespace

/// The first byte chooses a kind, the rest is its form as somebody left it. What is taken is a
/// widget whose own form is taken, and of the same kind, place and identifier.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 1)
    return 0;
  const std::string_view form(reinterpret_cast<const char*>(bytes) + 1, size - 1);
  const auto& kinds = allKinds();
  const DockWidget base = widgetOf(kinds[bytes[0] % kinds.size()]);
  const SettingSystem system{"/home/somebody"};
  try {
    const auto edited = widgetFromForm(base, form, now, system);
    require(edited.id == base.id && edited.kind.index() == base.kind.index(),
            "a form leaves the kind and the identifier");
    checkForm(edited, system);
    require(merged(base, edited, base) == edited, "what was edited is merged");
    require(merged(base, base, edited) == edited, "what came in between is kept");
  } catch (const HostError&) {
    // It says what is wrong with the form.
  } catch (const SettingError&) {
  }
  const auto once = withComplaint(form, "no");
  require(withComplaint(once, "no") == once, "there is one complaint");
  return 0;
}
