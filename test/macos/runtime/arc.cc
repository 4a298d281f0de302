// The entry points that Clang's ARC code calls, over GCC's Objective-C runtime, which has none.
// Clang refuses ARC for that runtime, so the backend is compiled for gnustep-1.9 with legacy
// dispatch: the same metadata layout and the same message lookup, plus these functions. What each
// does is laid down in Clang's "Objective-C Automatic Reference Counting", section "Runtime
// support".
//
// Left out on purpose: everything for __weak, which the backend does not use. A use would not link.
#include <objc/message.h>
#include <objc/runtime.h>

#include "blocks.h"
#include "counters.h"

namespace macdoubles {

std::atomic<long> open_pools{0};

namespace {

thread_local long open_pools_of_thread = 0;

id Send(id receiver, SEL selector) {
  return objc_msg_lookup(receiver, selector)(receiver, selector);
}

// Blocks are counted by their own runtime, to which the retain of one on the stack is a copy.
bool IsBlock(id object) {
  const void* isa = object->class_pointer;
  return isa == _NSConcreteStackBlock || isa == _NSConcreteMallocBlock ||
         isa == _NSConcreteGlobalBlock;
}

void CountPools(long change) {
  open_pools += change;
  open_pools_of_thread += change;
}

}  // namespace

long OpenPoolsOfThread() { return open_pools_of_thread; }

}  // namespace macdoubles

extern "C" {

id objc_retain(id object) {
  static const SEL retain = sel_registerName("retain");
  if (!object) return nil;
  if (macdoubles::IsBlock(object)) return static_cast<id>(_Block_copy(object));
  return macdoubles::Send(object, retain);
}

void objc_release(id object) {
  static const SEL release = sel_registerName("release");
  if (!object) return;
  if (macdoubles::IsBlock(object)) {
    _Block_release(object);
  } else {
    macdoubles::Send(object, release);
  }
}

id objc_autorelease(id object) {
  static const SEL autorelease = sel_registerName("autorelease");
  if (!object) return nil;
  return macdoubles::Send(object, autorelease);
}

id objc_retainAutorelease(id object) { return objc_autorelease(objc_retain(object)); }

// The handshake between caller and callee that skips the pool is an optimisation: here every
// returned object goes through the pool, and the caller retains it from there.
id objc_autoreleaseReturnValue(id object) { return objc_autorelease(object); }
id objc_retainAutoreleaseReturnValue(id object) { return objc_retainAutorelease(object); }
id objc_retainAutoreleasedReturnValue(id object) { return objc_retain(object); }

id objc_retainBlock(id block) { return static_cast<id>(_Block_copy(block)); }

void objc_storeStrong(id* slot, id object) {
  id const old = *slot;
  if (object == old) return;
  *slot = objc_retain(object);
  objc_release(old);
}

void* objc_autoreleasePoolPush() {
  static const SEL make = sel_registerName("new");
  static const id pool_class = reinterpret_cast<id>(objc_getClass("NSAutoreleasePool"));
  macdoubles::CountPools(1);
  return macdoubles::Send(pool_class, make);
}

void objc_autoreleasePoolPop(void* pool) {
  static const SEL drain = sel_registerName("drain");
  macdoubles::CountPools(-1);
  macdoubles::Send(static_cast<id>(pool), drain);
}

// Message lookup as gnustep-1.9 code spells it: a slot instead of the bare function.
struct objc_slot {
  Class owner;
  Class cached_for;
  const char* types;
  int version;
  IMP method;
};

objc_slot* objc_msg_lookup_sender(id* receiver, SEL selector, id /*sender*/) {
  static thread_local objc_slot slot;
  slot.method = objc_msg_lookup(*receiver, selector);
  return &slot;
}

}  // extern "C"
