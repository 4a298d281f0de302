#include "core/tracked_object.h"

#include <mutex>
#include <unordered_map>
#include <vector>

#include <objc/runtime.h>

#include "core/live_objects.h"
#include "core/recorder.h"

namespace macdoubles {
namespace {

struct Census {
  std::mutex mutex;
  std::unordered_map<const void*, std::string> living;
  std::unordered_map<const void*, std::string> dead;
};

// Never destroyed: it keeps the zombies reachable, so that they are no leaks.
Census& TheCensus() {
  static Census& census = *new Census;
  return census;
}

void Register(const void* object, const std::string& label) {
  Census& census = TheCensus();
  const std::lock_guard lock(census.mutex);
  census.living[object] = label;
}

void Bury(const void* object, const std::string& label) {
  Census& census = TheCensus();
  const std::lock_guard lock(census.mutex);
  census.living.erase(object);
  census.dead[object] = label;
}

std::string LabelOfDead(const void* object) {
  Census& census = TheCensus();
  const std::lock_guard lock(census.mutex);
  return census.dead[object];
}

}  // namespace

std::map<std::string, long> LiveObjects() {
  Census& census = TheCensus();
  const std::lock_guard lock(census.mutex);
  std::map<std::string, long> counts;
  for (const auto& [object, label] : census.living) ++counts[label];
  return counts;
}

void BeginCounting() {
  Census& census = TheCensus();
  const std::lock_guard lock(census.mutex);
  census.living.clear();
}

std::string LabelOf(id object) {
  if (!object) return "nil";
  if (object_getClass(object) == objc_getClass("DeadObject")) return "dead " + LabelOfDead(object);
  if ([object isKindOfClass:[TrackedObject class]]) {
    return [static_cast<TrackedObject*>(object) label];
  }
  return object_getClassName(object);
}

}  // namespace macdoubles

// A root class: whatever is sent to a zombie finds no method and ends in -forwardInvocation:.
__attribute__((objc_root_class))
@interface DeadObject {
  Class isa;
}
@end

@implementation DeadObject

+ (void)initialize {
}

- (NSMethodSignature*)methodSignatureForSelector:(SEL)selector {
  NSMethodSignature* signature = [TrackedObject instanceMethodSignatureForSelector:selector];
  // A selector that only the living class knew: any signature does, the message is not delivered.
  return signature ? signature : [NSMethodSignature signatureWithObjCTypes:"@@:"];
}

- (void)forwardInvocation:(NSInvocation*)invocation {
  macdoubles::Violate("-" + std::string(sel_getName([invocation selector])) + " sent to dead " +
                      macdoubles::LabelOfDead(self));
}

- (id)retain {
  macdoubles::Violate("-retain sent to dead " + macdoubles::LabelOfDead(self));
  return reinterpret_cast<id>(self);
}

- (void)release {
  macdoubles::Violate("over-release of " + macdoubles::LabelOfDead(self));
}

- (id)autorelease {
  macdoubles::Violate("-autorelease sent to dead " + macdoubles::LabelOfDead(self));
  return reinterpret_cast<id>(self);
}

@end

@implementation TrackedObject

- (id)initWithLabel:(const std::string&)label {
  self = [super init];
  _label = new std::string(label);
  macdoubles::Register(self, label);
  return self;
}

- (const std::string&)label {
  return *_label;
}

- (void)dispose {
}

- (void)dealloc {
  [self dispose];
  macdoubles::Bury(self, *_label);
  delete _label;
  // The memory stays, with a class that reports every message.
  object_setClass(self, objc_getClass("DeadObject"));
  if (false) [super dealloc];  // the compiler insists on the call
}

@end
