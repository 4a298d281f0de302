#include "platform/call_scope.h"

// The two runtime functions behind @autoreleasepool, which cannot span a constructor and a
// destructor. Declared in Clang's "Objective-C Automatic Reference Counting", "Runtime support".
extern "C" void* objc_autoreleasePoolPush(void);
extern "C" void objc_autoreleasePoolPop(void* pool);

namespace deskhand::platform {

CallScope::CallScope() : handle_(objc_autoreleasePoolPush()) {}

CallScope::~CallScope() { objc_autoreleasePoolPop(handle_); }

}  // namespace deskhand::platform
