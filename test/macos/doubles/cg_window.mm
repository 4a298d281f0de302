// Quartz Window Services. The scene's `windows` are the entries of the on-screen window list, front
// to back: objects with the keys and values that the entries have, whatever they are; an entry that
// is no object stands for itself. Null for no list.
// Documented at developer.apple.com/documentation/coregraphics/quartz_window_services: the list may
// be NULL, most keys are optional; a rectangle's dictionary has "X", "Y", "Width" and "Height".
#import <CoreGraphics/CoreGraphics.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "objects.h"

namespace {

CFStringRef Key(NSString* name) { return reinterpret_cast<CFStringRef>(name); }

}  // namespace

const CFStringRef kCGWindowAlpha = Key(@"kCGWindowAlpha");
const CFStringRef kCGWindowBounds = Key(@"kCGWindowBounds");
const CFStringRef kCGWindowLayer = Key(@"kCGWindowLayer");
const CFStringRef kCGWindowOwnerName = Key(@"kCGWindowOwnerName");
const CFStringRef kCGWindowOwnerPID = Key(@"kCGWindowOwnerPID");

using macdoubles::RecordFailable;
using macdoubles::Value;

/// A dictionary whose readings are recorded. They do not fail: what it lacks, it lacks each time.
@interface DoubleWindow : TrackedObject {
  Value* _script;
}
@end

@implementation DoubleWindow

- (id)initWithScript:(const Value&)script index:(size_t)index {
  self = [super initWithLabel:"window " + std::to_string(index)];
  _script = new Value(script);
  return self;
}

- (void)dispose {
  delete _script;
}

- (BOOL)isKindOfClass:(Class)other {
  return other == [NSDictionary class] || [super isKindOfClass:other];
}

- (id)objectForKey:(id)key {
  const std::string name = macdoubles::ToText(key);
  macdoubles::Record("-[NSDictionary objectForKey:]", {[self label], name});
  const auto has = [&](const Value::Object& members) { return members.count(name) > 0; };
  const bool is_there = _script->Visit([&](const auto& held) {
    if constexpr (std::is_same_v<std::decay_t<decltype(held)>, Value::Object>) return has(held);
    return false;
  });
  return is_there ? macdoubles::ToObject((*_script)[name]) : nil;
}

@end

@interface DoubleWindowList : TrackedObject {
  NSMutableArray* _windows;
}
@end

@implementation DoubleWindowList

- (id)initWithScripts:(const Value::List&)scripts {
  self = [super initWithLabel:"window list"];
  _windows = [[NSMutableArray alloc] init];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  for (const Value& script : scripts) {
    const bool is_object = script.Visit([](const auto& held) {
      return std::is_same_v<std::decay_t<decltype(held)>, Value::Object>;
    });
    id window = is_object ? [[[DoubleWindow alloc] initWithScript:script
                                                            index:[_windows count]] autorelease]
                          : macdoubles::ToObject(script);
    [_windows addObject:window];
  }
  [pool release];
  return self;
}

- (void)dispose {
  [_windows release];
}

- (NSUInteger)count {
  return [_windows count];
}

- (id)objectAtIndex:(NSUInteger)index {
  return [[[_windows objectAtIndex:index] retain] autorelease];
}

@end

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
  const bool fails = RecordFailable("CGWindowListCopyWindowInfo",
                                    {static_cast<uint32_t>(option), relativeToWindow});
  const Value scripts = macdoubles::SceneOf("windows");
  if (fails || scripts.IsNull()) return nullptr;
  DoubleWindowList* list = [[DoubleWindowList alloc] initWithScripts:scripts.Items()];
  return reinterpret_cast<CFArrayRef>(list);
}

bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dict, CGRect* rect) {
  NSDictionary* dictionary = reinterpret_cast<NSDictionary*>(const_cast<__CFDictionary*>(dict));
  if (RecordFailable("CGRectMakeWithDictionaryRepresentation", {macdoubles::ToValue(dictionary)})) {
    return false;
  }
  if (![dictionary isKindOfClass:[NSDictionary class]] || !rect) {
    macdoubles::Violate("CGRectMakeWithDictionaryRepresentation without dictionary or rectangle");
    return false;
  }
  CGFloat* const numbers[] = {&rect->origin.x, &rect->origin.y, &rect->size.width,
                              &rect->size.height};
  NSString* const keys[] = {@"X", @"Y", @"Width", @"Height"};
  for (size_t index = 0; index < 4; ++index) {
    NSNumber* number = [dictionary objectForKey:keys[index]];
    if (![number isKindOfClass:[NSNumber class]]) return false;
    *numbers[index] = [number doubleValue];
  }
  return true;
}
