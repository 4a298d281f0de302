// The base of every object that the doubles hand out: counted while it lives, and kept as a zombie
// afterwards, so that a use or a release of the dead is reported instead of crashing.
// Thread: any.
#pragma once

#include <string>

#import <Foundation/Foundation.h>

@interface TrackedObject : NSObject {
  // A pointer, because GCC's runtime does not construct C++ members.
  std::string* _label;
}

/// `label` says in the record and in reports which object it is: "screen 1".
- (id)initWithLabel:(const std::string&)label;

- (const std::string&)label;

/// Releases what the object owns. A subclass overrides this instead of -dealloc.
- (void)dispose;

@end

namespace macdoubles {

/// The label of any double, dead ones too; "nil" for nil.
std::string LabelOf(id object);

}  // namespace macdoubles
