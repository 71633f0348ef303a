#include "TavrinSlot/SlotMain.h"

/// What the program in every slot's bundle calls.
extern "C" __attribute__((visibility("default"))) int tavrinSlotMain(int argc, char** argv) {
  return tavrin::slotMain(argc, argv);
}
