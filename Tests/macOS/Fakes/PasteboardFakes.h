#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#import <AppKit/AppKit.h>

struct PasteboardState {
  long count = 1;
  /// By the system's names of types.
  std::map<std::string, std::string> contents;
  std::vector<std::string> files;
  /// How often its contents, not its count, were looked at.
  int reads = 0;
  /// What happens while a type is being read.
  void (^whileReading)() = nil;
};
extern PasteboardState pasteboard;
