#include "Tests/macOS/Fakes/PasteboardFakes.h"

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

PasteboardState pasteboard;

static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }
static NSString* make(const std::string& text) {
  return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}
static NSArray* typesNow() {
  std::vector<id> types;
  for (const auto& [type, bytes] : pasteboard.contents) types.push_back(make(type));
  if (!pasteboard.files.empty()) types.push_back(NSPasteboardTypeFileURL);
  return [[FakeArray alloc] initWith:types];
}

NSPasteboardType const NSPasteboardTypeString = @"public.utf8-plain-text";
NSPasteboardType const NSPasteboardTypeTIFF = @"public.tiff";
NSPasteboardType const NSPasteboardTypePNG = @"public.png";
NSPasteboardType const NSPasteboardTypeFileURL = @"public.file-url";
NSPasteboardReadingOptionKey const NSPasteboardURLReadingFileURLsOnlyKey = @"files only";

@implementation NSPasteboardItem { std::map<std::string, std::string> kept; }
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type {
  kept[textOf(type)] = std::string(static_cast<const char*>(data.bytes), data.length);
  return YES;
}
- (NSArray*)types { return typesNow(); }
- (void)copyInto:(std::map<std::string, std::string>*)contents { *contents = kept; }
@end
@interface NSPasteboardItem (Fake)
- (void)copyInto:(std::map<std::string, std::string>*)contents;
@end
@implementation NSPasteboard
+ (NSPasteboard*)generalPasteboard { static NSPasteboard* board = [[NSPasteboard alloc] init]; return board; }
- (NSInteger)changeCount { return pasteboard.count; }
- (NSArray*)types { ++pasteboard.reads; return typesNow(); }
- (NSArray*)pasteboardItems { return @[ [[NSPasteboardItem alloc] init] ]; }
- (NSInteger)clearContents { pasteboard.contents.clear(); pasteboard.files.clear(); return ++pasteboard.count; }
- (BOOL)writeObjects:(NSArray*)objects {
  for (id each in objects)
    if ([each isKindOfClass:NSURL.class]) pasteboard.files.push_back(textOf(((NSURL*)each).absoluteString));
    else [(NSPasteboardItem*)each copyInto:&pasteboard.contents];
  return YES;
}
- (NSData*)dataForType:(NSPasteboardType)type {
  const auto found = pasteboard.contents.find(textOf(type));
  return found == pasteboard.contents.end() ? nil : [NSData dataWithBytes:found->second.data() length:found->second.size()];
}
- (NSString*)stringForType:(NSPasteboardType)type {
  if (pasteboard.whileReading != nil) pasteboard.whileReading();
  const auto found = pasteboard.contents.find(textOf(type));
  return found == pasteboard.contents.end() ? nil : make(found->second);
}
- (NSArray*)readObjectsForClasses:(NSArray*)classes options:(NSDictionary*)options {
  std::vector<id> urls;
  for (const auto& file : pasteboard.files) urls.push_back([NSURL URLWithString:make(file)]);
  return [[FakeArray alloc] initWith:urls];
}
@end
