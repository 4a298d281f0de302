#include "core/classes.h"

#include <vector>

#import <Foundation/Foundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

namespace macdoubles {

void PrepareClasses() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  std::vector<Class> classes(static_cast<size_t>(objc_getClassList(nullptr, 0)));
  objc_getClassList(classes.data(), static_cast<int>(classes.size()));
  for (Class each : classes) {
    // The look-up alone prepares a class; nothing is sent.
    objc_msg_lookup(each, @selector(alloc));
    class_getMethodImplementation(each, @selector(init));
  }
  [pool release];
}

}  // namespace macdoubles
