#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#include <IOKit/IOKitLib.h>
#include <cstdint>
#include <functional>

@class NSXPCListener;

/// A machine without batteries, drives and counters: what the tests of the C-level adapters ask
/// about is not here. A controller with the keys it is given, and the loop of a program without
/// the toolkit.
struct MachineState {
  struct Value {
    std::string type;
    std::vector<std::uint8_t> bytes;
  };
  std::map<std::string, Value> smc;
  int connections = 0;
  /// A turn of CFRunLoopRunInMode; what it answers.
  std::function<int(double seconds)> loopTurn;
  /// Who hears of sleep.
  IOServiceInterestCallback power = nullptr;
  void* powerContext = nullptr;
  bool hasPowerNotices = true;
  /// The last one made, while it lives.
  __weak NSXPCListener* listener = nil;
};
extern MachineState machine;
