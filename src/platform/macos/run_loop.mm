#include "platform/run_loop.h"

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include "platform/call_scope.h"

namespace deskhand::platform {

bool IsMainThread() { return CFRunLoopGetCurrent() == CFRunLoopGetMain(); }

// Any call of Quartz Display Services connects. Without one ScreenCaptureKit is known to end the
// process, when it asks the window server where displays are.
void ConnectToWindowServer() { CGMainDisplayID(); }

void ServiceMainQueue() {
  // With no time to spend a run makes one pass and handles one source at most; the main queue is
  // one, with all of its blocks that wait.
  constexpr int kMostPasses = 16;
  const CallScope scope;
  for (int pass = 0; pass < kMostPasses; ++pass) {
    if (CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, true) != kCFRunLoopRunHandledSource) return;
  }
}

void* FindInLoadedLibrary(const std::string& file, const char* name) {
  // Never closed: what was found must stay.
  void* const library = dlopen(file.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  return library ? dlsym(library, name) : nullptr;
}

}  // namespace deskhand::platform
