#pragma once
#import <EventKit/EventKit.h>
#import <Foundation/Foundation.h>
#include <map>
#include <string>
#include <vector>

/// What the fakes were asked for, in order.
extern std::vector<std::string> calls;
void note(std::string call);

extern "C" {
id tavrin_make(Class type) __attribute__((ns_returns_retained));
void tavrin_free(void* object);
bool tavrin_responds(void* object, SEL selector);
void tavrin_perform(void* object, SEL selector, void* argument);
Class tavrin_class(void* object);
bool tavrin_is_kind(void* object, Class type);
/// How many objects of each class live, less those told to stay.
int tavrin_live(const char* name);
void tavrin_snapshot();
/// Prints and counts the objects there are more of than at the snapshot.
int tavrin_left();
}
#define RAW(object) ((__bridge void*)(object))

@interface FakeArray : NSArray
- (instancetype)initWith:(std::vector<id>)items;
@end

@interface NSNotification ()
+ (NSNotification*)named:(NSString*)name object:(id)object info:(NSDictionary*)info;
@end
@interface NSNotificationCenter ()
- (void)post:(NSString*)name object:(id)object info:(NSDictionary*)info;
@property(readonly) NSUInteger observers;
@end
/// Posts on the main thread, as all of them do here.
inline void postNotice(NSNotificationCenter* center, NSString* name) {
  [center post:name object:nil info:nil];
}

struct FakeBundle {
  std::string identifier;
  bool hasProgram = true;
  std::map<std::string, NSObject*> information;
};

/// What the fakes answer.
struct FoundationState {
  /// The main bundle: its path, its entries.
  std::string bundlePath = "/Applications/Tavrin Slot 3.app";
  std::map<std::string, NSObject*> information;
  std::map<std::string, std::string> environment = {{"HOME", "/Users/ada"}, {"TAVRIN_LOG", "stderr"}};
  /// Suites and keys of the defaults; the application's own suite is "".
  std::map<std::string, std::map<std::string, NSObject*>> defaults;
  bool canSynchronize = true;
  bool isLowPower = false;
  bool canTrash = true;
  /// Other bundles, by path; the folders of applications; names for the user, by path.
  std::map<std::string, FakeBundle> bundles;
  std::vector<std::string> applicationFolders;
  std::map<std::string, std::string> displayNames;
};
extern FoundationState foundation;
