#include "sc_errors.h"

namespace macdoubles {

NSError* NewStreamError(const std::string& text) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  constexpr NSInteger kInternalError = -3811;  // SCStreamErrorInternalError
  NSDictionary* info =
      [NSDictionary dictionaryWithObject:[NSString stringWithUTF8String:text.c_str()]
                                  forKey:NSLocalizedDescriptionKey];
  NSError* error = [[NSError alloc] initWithDomain:@"com.apple.ScreenCaptureKit.SCStreamErrorDomain"
                                              code:kInternalError
                                          userInfo:info];
  [pool release];
  return error;
}

}  // namespace macdoubles
