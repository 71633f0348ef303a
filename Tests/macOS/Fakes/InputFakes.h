#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#import <Carbon/Carbon.h>

/// The session's input as the fakes have it. Objects that were made and not let go of are counted.
struct InputState {
  bool isTrusted = true;
  bool isSecure = false;
  bool isLocked = false;
  bool hasTap = true;
  bool hasSource = true;
  bool isEnabled = false;
  CGEventTapCallBack callback = nullptr;
  void* context = nullptr;
  int ports = 0;
  int sources = 0;
  /// Hot keys by the code of their key; what registering answers for it.
  std::map<unsigned, OSStatus> refused;
  std::map<unsigned, EventHotKeyID> keys;
  EventHandlerUPP handler = nullptr;
  void* handlerContext = nullptr;
};
extern InputState input;
/// Whether it was passed on.
bool sendInput(unsigned type);
OSStatus pressKey(EventHotKeyID identity);
