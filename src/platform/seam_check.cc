// Refers to every function of the seam, so that a backend that lacks one fails at build time. Does
// nothing when run. A new seam function is added here.
#include <cstdio>

#include "platform/applications.h"
#include "platform/bundles.h"
#include "platform/call_scope.h"
#include "platform/clipboard.h"
#include "platform/displays.h"
#include "platform/input.h"
#include "platform/main_queue.h"
#include "platform/permissions.h"
#include "platform/screen_capture.h"
#include "platform/windows.h"

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

// These names are shared by functions of several types.
constexpr std::optional<std::string> (*kBundleIdOfApplication)(const RunningApplication&) =
    &BundleId;
constexpr std::optional<std::string> (*kBundleIdOfBundle)(const Bundle&) = &BundleId;
constexpr size_t (*kCountOfIndexed)(const IndexedApplications&) = &CountOf;
constexpr size_t (*kCountOfWindows)(const WindowList&) = &CountOf;

int main(int argc, char**) {
  // Never true: the scope and the semaphore are linked, not run.
  if (argc < 0) {
    const CallScope scope;
    const InputScope input;
    const Semaphore semaphore;
    semaphore.Signal();
    semaphore.Wait({});
  }
  const int count =
      Refer<&Screens, &MainScreen, &PrimaryScreenHeight, &MainDisplayId, &PostToMainQueue,
            &Displays, &ApplicationBundleIds, &GetShareableContent, &CaptureImage, &EncodeJpeg,
            &SizeInBytes, &Base64, &PostMouseEvent, &PostWheelEvent, &PostKeyEvent, &PostText,
            &CursorPosition, &Pause, &DisplayAt, &RunningApplications, &FrontmostApplication,
            &IsRegular, kBundleIdOfApplication, &LocalizedName, &ProcessId, &IsHidden, &Hide,
            &Unhide, &OpenApplication, &Activate, &OwnProcessId, &LocationOfApplication, &PathOf,
            &BundleAt, &BundleAtPath, kBundleIdOfBundle, &IsBackgroundOnly, &IsAgent,
            &ApplicationFolders, &PathInFolder, &PathExists, &DisplayNameAtPath, &LowerCase,
            kCountOfIndexed, &PathAt, &DisplayNameAt, &QueryApplicationIndex, &OnScreenWindows,
            kCountOfWindows, &OwnerProcessId, &LayerOf, &AlphaOf, &OwnerName, &BoundsOf, &OwnerOf,
            &ClipboardText, &ClearClipboard, &SetClipboardText, &HasAccessibility,
            &RequestAccessibility, &HasScreenRecording, &RequestScreenRecording>();
  std::printf("%d seam functions\n", count);
}
