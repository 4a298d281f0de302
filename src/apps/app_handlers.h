// The exported functions about applications. Thread: the JavaScript thread.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value ListRunningApps(const Napi::CallbackInfo& info);
Napi::Value GetFrontmostApp(const Napi::CallbackInfo& info);
Napi::Value ListInstalledApps(const Napi::CallbackInfo& info);
Napi::Value ResolveAppName(const Napi::CallbackInfo& info);
Napi::Value AppUnderPoint(const Napi::CallbackInfo& info);
Napi::Value OpenApp(const Napi::CallbackInfo& info);
Napi::Value HideApps(const Napi::CallbackInfo& info);
Napi::Value UnhideApps(const Napi::CallbackInfo& info);

}  // namespace deskhand
