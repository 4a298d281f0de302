// The mouse as JavaScript sees it. Thread: the JavaScript thread, which the pauses block.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value MouseClick(const Napi::CallbackInfo& info);
Napi::Value MouseMove(const Napi::CallbackInfo& info);
Napi::Value MouseDrag(const Napi::CallbackInfo& info);
Napi::Value MouseDown(const Napi::CallbackInfo& info);
Napi::Value MouseUp(const Napi::CallbackInfo& info);
Napi::Value Scroll(const Napi::CallbackInfo& info);
Napi::Value GetCursorPosition(const Napi::CallbackInfo& info);

}  // namespace deskhand
