// NSRunningApplication. The scene's `running` are the applications in the system's order: objects
// with `pid`, `policy` (0 is regular), `bundleId`, `name` (null for nil) and `isHidden`. A list
// instead of a value is what the first, the second ... reading gives, and the last of it from then
// on: an application that ends meanwhile. Requests are recorded and change nothing.
// Documented at developer.apple.com/documentation/appkit/nsrunningapplication: identifier and name
// may be nil; hide, unhide and activation say whether the request was sent.
#import <AppKit/AppKit.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "objects.h"
#include "running_applications.h"

using macdoubles::Record;
using macdoubles::RecordFailable;
using macdoubles::ToNSString;
using macdoubles::Value;

namespace {

pid_t ProcessOf(const Value& script) { return static_cast<pid_t>(script["pid"].Number()); }

/// How often this was called on the object with this label.
size_t CallsSoFar(const std::string& name, const std::string& label) {
  size_t count = 0;
  for (const macdoubles::Call& call : macdoubles::Calls()) {
    count += call.name == name && call.arguments.front().Text() == label;
  }
  return count;
}

Value ReadingOf(const Value& scripted, size_t earlier) {
  const Value::List readings = scripted.Items();
  if (readings.empty()) return scripted;
  return earlier < readings.size() ? readings[earlier] : readings.back();
}

}  // namespace

@interface DoubleRunningApplication : TrackedObject {
  Value* _script;
}
@end

@implementation DoubleRunningApplication

- (id)initWithScript:(const Value&)script {
  self = [super initWithLabel:"process " + std::to_string(ProcessOf(script))];
  _script = new Value(script);
  return self;
}

- (void)dispose {
  delete _script;
}

- (Value)readingOf:(const char*)property call:(const char*)call {
  const size_t earlier = CallsSoFar(call, [self label]);
  return ReadingOf((*_script)[property], earlier);
}

- (NSApplicationActivationPolicy)activationPolicy {
  constexpr const char* kCall = "-[NSRunningApplication activationPolicy]";
  const Value policy = [self readingOf:"policy" call:kCall];
  Record(kCall, {[self label]});
  return static_cast<NSApplicationActivationPolicy>(policy.Number());
}

- (NSString*)bundleIdentifier {
  constexpr const char* kCall = "-[NSRunningApplication bundleIdentifier]";
  const Value identifier = [self readingOf:"bundleId" call:kCall];
  return RecordFailable(kCall, {[self label]}) ? nil : ToNSString(identifier);
}

- (NSString*)localizedName {
  constexpr const char* kCall = "-[NSRunningApplication localizedName]";
  const Value name = [self readingOf:"name" call:kCall];
  return RecordFailable(kCall, {[self label]}) ? nil : ToNSString(name);
}

- (pid_t)processIdentifier {
  Record("-[NSRunningApplication processIdentifier]", {[self label]});
  return ProcessOf(*_script);
}

- (BOOL)isHidden {
  constexpr const char* kCall = "-[NSRunningApplication isHidden]";
  const Value is_hidden = [self readingOf:"isHidden" call:kCall];
  Record(kCall, {[self label]});
  return is_hidden.IsTrue();
}

- (BOOL)hide {
  return !RecordFailable("-[NSRunningApplication hide]", {[self label]});
}

- (BOOL)unhide {
  return !RecordFailable("-[NSRunningApplication unhide]", {[self label]});
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
  return !RecordFailable("-[NSRunningApplication activateWithOptions:]",
                         {[self label], static_cast<NSUInteger>(options)});
}

@end

@implementation NSRunningApplication

+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid {
  if (RecordFailable("+[NSRunningApplication runningApplicationWithProcessIdentifier:]", {pid})) {
    return nil;
  }
  return macdoubles::RunningApplicationOf(pid);
}

@end

namespace macdoubles {

NSRunningApplication* NewRunningApplication(const Value& script) {
  return static_cast<id>([[DoubleRunningApplication alloc] initWithScript:script]);
}

NSArray* RunningApplications() {
  NSMutableArray* running = [NSMutableArray array];
  for (const Value& script : SceneOf("running").Items()) {
    [running addObject:[NewRunningApplication(script) autorelease]];
  }
  return running;
}

NSRunningApplication* RunningApplicationOf(pid_t pid) {
  for (const Value& script : SceneOf("running").Items()) {
    if (ProcessOf(script) == pid) return [NewRunningApplication(script) autorelease];
  }
  return nil;
}

}  // namespace macdoubles
