#pragma once
#include "Tests/macOS/Fakes/FoundationFakes.h"

#import <Intents/Intents.h>
#import <ServiceManagement/ServiceManagement.h>
#include <set>

@class NSXPCConnection, NSXPCListener;

/// A program that answers Apple events.
struct FakePlayer {
  /// By the four letters of a property, "pTrk." before those of the track.
  std::map<std::string, double> numbers;
  std::map<std::string, std::string> texts;
  std::map<std::string, std::string> codes;
  /// What sending, and what the reply says.
  int sendError = 0;
  int replyError = 0;
};

struct ServiceState {
  std::map<int, FakePlayer> players;
  SMAppServiceStatus helper = SMAppServiceStatusNotRegistered;
  SMAppServiceStatus afterRegistering = SMAppServiceStatusEnabled;
  int registerError = 0;
  void (^unregistered)(NSError*) = nil;
  /// What the other end of a connection is; nil: nobody answers.
  id remote = nil;
  std::vector<NSXPCConnection*> connections;
  NSNumber* isFocused = nil;
  /// Property lists of launch agents that the user forbade.
  std::set<std::string> forbidden;
  INFocusStatusAuthorizationStatus focusAccess = INFocusStatusAuthorizationStatusNotDetermined;
};
extern ServiceState services;
