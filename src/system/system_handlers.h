// The exported functions about the clipboard and permissions. Thread: the JavaScript thread.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value ReadClipboard(const Napi::CallbackInfo& info);
Napi::Value WriteClipboard(const Napi::CallbackInfo& info);
Napi::Value CheckAccessibility(const Napi::CallbackInfo& info);
Napi::Value RequestAccessibility(const Napi::CallbackInfo& info);
Napi::Value CheckScreenRecording(const Napi::CallbackInfo& info);
Napi::Value RequestScreenRecording(const Napi::CallbackInfo& info);

}  // namespace deskhand
