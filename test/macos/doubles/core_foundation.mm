// Ownership in CoreFoundation.
// Documented at developer.apple.com/documentation/corefoundation/cfrelease(_:): a null reference
// ends the process.
#import <CoreFoundation/CoreFoundation.h>

#include "core/recorder.h"
#include "core/tracked_object.h"

namespace {

id ObjectOf(CFTypeRef reference) { return reinterpret_cast<id>(const_cast<void*>(reference)); }

}  // namespace

CFTypeRef CFRetain(CFTypeRef reference) {
  if (!reference) macdoubles::Violate("CFRetain(NULL)");
  return [ObjectOf(reference) retain];
}

void CFRelease(CFTypeRef reference) {
  if (!reference) macdoubles::Violate("CFRelease(NULL)");
  macdoubles::Record("CFRelease", {macdoubles::LabelOf(ObjectOf(reference))});
  [ObjectOf(reference) release];
}
