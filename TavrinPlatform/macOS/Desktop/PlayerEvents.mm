#include "TavrinPlatform/macOS/Desktop/PlayerEvents.h"

#include "TavrinPlatform/macOS/Base/MacText.h"

#import <CoreServices/CoreServices.h>

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr NSTimeInterval answerLimit = 3;

constexpr OSType playerState = fourLetters("pPlS");
constexpr OSType playerPosition = fourLetters("pPos");
constexpr OSType soundVolume = fourLetters("pVol");
constexpr OSType currentTrack = fourLetters("pTrk");
constexpr OSType trackName = fourLetters("pnam");
constexpr OSType trackArtist = fourLetters("pArt");
constexpr OSType trackAlbum = fourLetters("pAlb");
constexpr OSType trackDuration = fourLetters("pDur");
constexpr OSType statePlaying = fourLetters("kPSP");
constexpr OSType statePaused = fourLetters("kPSp");

/// The property of the application, or of the object that `container` names.
NSAppleEventDescriptor* property(OSType name, NSAppleEventDescriptor* container) {
  NSAppleEventDescriptor* record = [NSAppleEventDescriptor recordDescriptor];
  [record setDescriptor:[NSAppleEventDescriptor descriptorWithTypeCode:cProperty]
             forKeyword:keyAEDesiredClass];
  [record setDescriptor:container forKeyword:keyAEContainer];
  [record setDescriptor:[NSAppleEventDescriptor descriptorWithEnumCode:formPropertyID]
             forKeyword:keyAEKeyForm];
  [record setDescriptor:[NSAppleEventDescriptor descriptorWithTypeCode:name]
             forKeyword:keyAEKeyData];
  NSAppleEventDescriptor* specifier = [record coerceToDescriptorType:typeObjectSpecifier];
  return specifier != nil ? specifier : record;
}

NSAppleEventDescriptor* property(OSType name) {
  return property(name, [NSAppleEventDescriptor nullDescriptor]);
}

NSAppleEventDescriptor* eventTo(int process, AEEventClass suite, AEEventID event) {
  return [NSAppleEventDescriptor
      appleEventWithEventClass:suite
                       eventID:event
              targetDescriptor:[NSAppleEventDescriptor descriptorWithProcessIdentifier:process]
                      returnID:kAutoGenerateReturnID
                 transactionID:kAnyTransactionID];
}

/// Nil where the player answers an error; `error` keeps the first.
NSAppleEventDescriptor* send(NSAppleEventDescriptor* event, int* error) {
  NSError* trouble = nil;
  NSAppleEventDescriptor* reply = [event sendEventWithOptions:NSAppleEventSendDefaultOptions
                                                      timeout:answerLimit
                                                        error:&trouble];
  int number = static_cast<int>(trouble.code);
  if (reply != nil)
    number = [reply paramDescriptorForKeyword:keyErrorNumber].int32Value;
  if (error != nullptr && *error == 0)
    *error = number;
  return number == 0 ? reply : nil;
}

NSAppleEventDescriptor* get(int process, NSAppleEventDescriptor* object, int* error) {
  NSAppleEventDescriptor* event = eventTo(process, kAECoreSuite, kAEGetData);
  [event setParamDescriptor:object forKeyword:keyDirectObject];
  return [send(event, error) paramDescriptorForKeyword:keyDirectObject];
}

void set(int process, OSType name, double value) {
  NSAppleEventDescriptor* event = eventTo(process, kAECoreSuite, kAESetData);
  [event setParamDescriptor:property(name) forKeyword:keyDirectObject];
  [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithDouble:value]
                 forKeyword:keyAEData];
  send(event, nullptr);
}

std::optional<double> number(NSAppleEventDescriptor* value) {
  if (value == nil)
    return std::nullopt;
  return value.doubleValue;
}

} // namespace

PlayerAnswer PlayerEvents::ask() const {
  @autoreleasepool {
    PlayerAnswer answer;
    const OSType state = get(process_, property(playerState), &answer.error).enumCodeValue;
    // The others would make it wait as long, or ask the user again.
    if (answer.error != 0)
      return answer;
    answer.state = state == statePlaying ? "Playing" : state == statePaused ? "Paused" : "Stopped";
    const auto ofPlayer = [&](OSType name) { return get(process_, property(name), nullptr); };
    answer.position = number(ofPlayer(playerPosition));
    if (const auto volume = number(ofPlayer(soundVolume)))
      answer.volume = std::clamp(*volume / 100, 0.0, 1.0);
    if (state != statePlaying && state != statePaused)
      return answer;
    NSAppleEventDescriptor* track = property(currentTrack);
    const auto ofTrack = [&](OSType name) { return get(process_, property(name, track), nullptr); };
    answer.title = toText(ofTrack(trackName).stringValue);
    answer.artist = toText(ofTrack(trackArtist).stringValue);
    answer.album = toText(ofTrack(trackAlbum).stringValue);
    if (const auto duration = number(ofTrack(trackDuration)))
      answer.duration = *duration / script_.durationUnit;
    return answer;
  }
}

void PlayerEvents::command(unsigned event) const {
  @autoreleasepool {
    send(eventTo(process_, script_.suite, event), nullptr);
  }
}

void PlayerEvents::setPosition(double seconds) const {
  @autoreleasepool {
    set(process_, playerPosition, seconds);
  }
}

void PlayerEvents::setVolume(double volume) const {
  @autoreleasepool {
    set(process_, soundVolume, std::round(volume * 100));
  }
}

} // namespace tavrin
