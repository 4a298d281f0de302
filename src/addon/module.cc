// The addon's entry points and its one table of exports.
// Thread: the JavaScript thread of each environment that loads the addon, but for what is said to
// be callable from any.
#include <type_traits>

#include <napi.h>

#include "addon/pending_promises.h"
#include "addon/promise_watch.h"
#include "apps/app_handlers.h"
#include "apps/window_handlers.h"
#include "capture/capture_handlers.h"
#include "displays/display_handlers.h"
#include "input/keyboard_handlers.h"
#include "input/mouse_handlers.h"
#include "platform/call_scope.h"
#include "system/system_handlers.h"

namespace deskhand {
namespace {

using Handler = Napi::Value (*)(const Napi::CallbackInfo&);

/// Every exported function runs inside a call scope of its own.
template <Handler kHandler>
Napi::Value Scoped(const Napi::CallbackInfo& info) {
  const platform::CallScope scope;
  return kHandler(info);
}

struct Export {
  const char* name;
  Handler handler;
};

// In the order in which they are attached.
constexpr Export kExports[] = {
    {"captureDisplay", Scoped<CaptureDisplay>},
    {"captureRegion", Scoped<CaptureRegion>},
    {"calculateTargetSize", Scoped<CalculateTargetSize>},
    {"mouseClick", Scoped<MouseClick>},
    {"mouseMove", Scoped<MouseMove>},
    {"mouseDrag", Scoped<MouseDrag>},
    {"mouseDown", Scoped<MouseDown>},
    {"mouseUp", Scoped<MouseUp>},
    {"scroll", Scoped<Scroll>},
    {"getCursorPosition", Scoped<GetCursorPosition>},
    {"typeText", Scoped<TypeText>},
    {"keyPress", Scoped<KeyPress>},
    {"keyHold", Scoped<KeyHold>},
    {"listRunningApps", Scoped<ListRunningApps>},
    {"listInstalledApps", Scoped<ListInstalledApps>},
    {"resolveAppName", Scoped<ResolveAppName>},
    {"getFrontmostApp", Scoped<GetFrontmostApp>},
    {"appUnderPoint", Scoped<AppUnderPoint>},
    {"openApp", Scoped<OpenApp>},
    {"hideApps", Scoped<HideApps>},
    {"unhideApps", Scoped<UnhideApps>},
    {"getWindowList", Scoped<GetWindowList>},
    {"listDisplays", Scoped<ListDisplays>},
    {"getDisplaySize", Scoped<GetDisplaySize>},
    {"readClipboard", Scoped<ReadClipboard>},
    {"writeClipboard", Scoped<WriteClipboard>},
    {"checkAccessibility", Scoped<CheckAccessibility>},
    {"requestAccessibility", Scoped<RequestAccessibility>},
    {"checkScreenRecording", Scoped<CheckScreenRecording>},
    {"requestScreenRecording", Scoped<RequestScreenRecording>},
};

void AttachAll(Napi::Env env, napi_value exports) {
  Napi::Error first_error;
  for (const auto& [name, handler] : kExports) {
    const Napi::Function function = Napi::Function::New(env, handler, name);
    if (napi_set_named_property(env, exports, name, function) == napi_ok) continue;
    // Takes a pending exception away, so that the remaining names can still be attached.
    const Napi::Error error = Napi::Error::New(env);
    if (first_error.IsEmpty()) first_error = error;
  }
  if (!first_error.IsEmpty()) first_error.ThrowAsJavaScriptException();
}

}  // namespace
}  // namespace deskhand

extern "C" {

NAPI_MODULE_EXPORT int32_t node_api_module_get_api_version_v1() { return 8; }

NAPI_MODULE_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports) {
  deskhand::AttachAll(env, exports);
  return exports;
}

// For the addon that services the main queue while promises are pending, which finds them by name:
// it is a library of its own, for few programs need it, and what JavaScript sees of this one is
// fixed. See promise_watch.h. Thread: any.
NAPI_MODULE_EXPORT void deskhand_watch_promises(deskhand::PromisesChanged changed, void* data) {
  deskhand::WatchPendingPromises(changed, data);
}

NAPI_MODULE_EXPORT void deskhand_unwatch_promises(deskhand::PromisesChanged changed, void* data) {
  deskhand::UnwatchPendingPromises(changed, data);
}

static_assert(std::is_same_v<decltype(&deskhand_watch_promises), deskhand::WatchPromises>);
static_assert(std::is_same_v<decltype(&deskhand_unwatch_promises), deskhand::UnwatchPromises>);

}  // extern "C"
