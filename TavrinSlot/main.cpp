#include "TavrinCore/Kinds/System/ClockFormat.h"
#include "TavrinSlot/SlotMain.h"

namespace {

/// Formatting a time loads the locale's data.
void prepare() {
  const tavrin::ClockFormat format({}, tavrin::Calendar());
  format.time({});
  format.dayCaption({});
}

} // namespace

int main(int argc, char** argv) {
  return tavrin::slotMain(argc, argv, prepare);
}
