// Foundation logs what it finds wrong, above all "autorelease called without pool": whatever it
// says fails the test.
#import <Foundation/Foundation.h>

#include "core/recorder.h"

namespace {

void ReportLog(NSString* message) {
  // The pool is for the conversion; the message itself may come from a thread that has none.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  macdoubles::Violate("Foundation says: " + std::string([message UTF8String]));
  [pool release];
}

}  // namespace

@interface MacDoublesLog : NSObject
@end

@implementation MacDoublesLog

+ (void)load {
  _NSLog_printf_handler = ReportLog;
}

@end
