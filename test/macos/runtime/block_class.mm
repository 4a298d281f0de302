// Makes blocks Objective-C objects, as on macOS: they can be retained, copied, autoreleased and put
// into collections.
#include <cstdlib>
#include <cstring>

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include "blocks.h"

@interface MacDoublesBlock : NSObject
@end

@implementation MacDoublesBlock

+ (void)load {
  // Any message gives the class its dispatch table; without one the copies would have none either.
  Class const block_class = [self class];
  const size_t size = class_getInstanceSize(object_getClass(block_class));
  if (size > sizeof _NSConcreteStackBlock) std::abort();
  // The compiler refers to the classes of blocks by these fixed addresses, while the runtime keeps
  // a class where the compiler put it: so each address gets a copy of the class. It is taken once;
  // nothing here adds methods to NSObject afterwards.
  std::memcpy(_NSConcreteStackBlock, block_class, size);
  std::memcpy(_NSConcreteMallocBlock, block_class, size);
  std::memcpy(_NSConcreteGlobalBlock, block_class, size);
}

- (id)retain {
  return static_cast<id>(_Block_copy(self));
}

- (oneway void)release {
  _Block_release(self);
}

- (id)copy {
  return static_cast<id>(_Block_copy(self));
}

- (id)copyWithZone:(NSZone*)zone {
  static_cast<void>(zone);
  return [self copy];
}

- (NSUInteger)retainCount {
  return 1;
}

@end
