// kCFBooleanTrue, which is Foundation's own @YES. It is declared as a constant, but made when the
// library is loaded, after its classes are registered.
// Documented at developer.apple.com/documentation/corefoundation/cfboolean.
#import <Foundation/Foundation.h>

NSNumber* boolean_true __asm__("kCFBooleanTrue");

@interface MacDoublesBoolean : NSObject
@end

@implementation MacDoublesBoolean

+ (void)load {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  boolean_true = [[NSNumber alloc] initWithBool:YES];
  [pool release];
}

@end
