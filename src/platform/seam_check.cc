// Refers to every function of the seam, so that a backend that lacks one fails at build time. Does
// nothing when run. A new seam function is added here.
#include <cstdio>

#include "platform/call_scope.h"
#include "platform/displays.h"
#include "platform/input.h"
#include "platform/main_queue.h"
#include "platform/screen_capture.h"

namespace {

using namespace deskhand::platform;

template <auto... kFunctions>
int Refer() {
  // Volatile, or the compiler knows the answer without asking the linker.
  void (*volatile addresses[])() = {reinterpret_cast<void (*)()>(kFunctions)...};
  int present = 0;
  for (auto& address : addresses) present += address != nullptr;
  return present;
}

}  // namespace

int main(int argc, char**) {
  // Never true: the scope and the semaphore are linked, not run.
  if (argc < 0) {
    const CallScope scope;
    const InputScope input;
    const Semaphore semaphore;
    semaphore.Signal();
    semaphore.Wait({});
  }
  const int count = Refer<&Screens, &MainScreen, &PrimaryScreenHeight, &MainDisplayId,
                          &PostToMainQueue, &Displays, &ApplicationBundleIds, &GetShareableContent,
                          &CaptureImage, &EncodeJpeg, &SizeInBytes, &Base64, &PostMouseEvent,
                          &PostWheelEvent, &PostKeyEvent, &PostText, &CursorPosition, &Pause>();
  std::printf("%d seam functions\n", count);
}
