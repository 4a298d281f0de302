// Foundation logs what it finds wrong, above all an autorelease without a pool: whatever it says
// fails the test. An exception that nobody catches ends the process, as on macOS.
#include <cstdio>
#include <cstdlib>

#import <Foundation/Foundation.h>

#include "core/recorder.h"

namespace {

void ReportLog(NSString* message) {
  // The pool is for the conversion; the message itself may come from a thread that has none.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  macdoubles::Violate("Foundation says: " + std::string([message UTF8String]));
  [pool release];
}

void EndProcess(NSException* exception) {
  std::fprintf(stderr, "uncaught %s: %s\n", [[exception name] UTF8String],
               [[exception reason] UTF8String]);
  // Not exit(), as GNUstep does: that would run destructors under the feet of other threads.
  std::abort();
}

}  // namespace

@interface MacDoublesLog : NSObject
@end

@implementation MacDoublesLog

+ (void)load {
  _NSLog_printf_handler = ReportLog;
  NSSetUncaughtExceptionHandler(EndProcess);
}

@end
