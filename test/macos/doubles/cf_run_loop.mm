// Run loops: the main thread's services the main dispatch queue when the scene's `mainQueue` says
// "run loop". It has nothing else to do, unless `runLoop` says "never idle": then it has handled
// something whenever it was run.
// Documented at developer.apple.com/documentation/corefoundation/cfrunloopruninmode(_:_:_:): with
// no time to spend it makes one pass; it says that it handled a source only if it was told to
// return then. .../cfrunloop: every thread has a run loop of its own.
#import <CoreFoundation/CoreFoundation.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "counters.h"
#include "main_queue.h"

const CFRunLoopMode kCFRunLoopDefaultMode = (CFStringRef) @"kCFRunLoopDefaultMode";

namespace {

// Nothing is sent to run loops: each is an address.
CFRunLoopRef RunLoopAt(char& place) { return reinterpret_cast<CFRunLoopRef>(&place); }

bool IsOnMainThread() { return syscall(SYS_gettid) == getpid(); }

CFRunLoopRef MainRunLoop() {
  static char place;
  return RunLoopAt(place);
}

}  // namespace

CFRunLoopRef CFRunLoopGetMain() {
  macdoubles::Record("CFRunLoopGetMain");
  return MainRunLoop();
}

CFRunLoopRef CFRunLoopGetCurrent() {
  macdoubles::Record("CFRunLoopGetCurrent");
  static thread_local char place;
  return IsOnMainThread() ? MainRunLoop() : RunLoopAt(place);
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
  macdoubles::Record("CFRunLoopRunInMode",
                     {[(NSString*)mode UTF8String], seconds, returnAfterSourceHandled != 0});
  // Whatever a source autoreleases would stay.
  if (macdoubles::OpenPoolsOfThread() == 0) {
    macdoubles::Violate("CFRunLoopRunInMode without an autorelease pool");
  }
  if (!IsOnMainThread()) return kCFRunLoopRunFinished;
  bool has_handled = macdoubles::SceneOf("runLoop").Text() == "never idle";
  if (macdoubles::SceneOf("mainQueue").Text() == "run loop") {
    has_handled = macdoubles::ServiceMainQueue() > 0 || has_handled;
  }
  return has_handled && returnAfterSourceHandled ? kCFRunLoopRunHandledSource
                                                 : kCFRunLoopRunTimedOut;
}
