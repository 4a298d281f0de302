// The keyboard as JavaScript sees it. Thread: the JavaScript thread, which the pauses block.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value TypeText(const Napi::CallbackInfo& info);
Napi::Value KeyPress(const Napi::CallbackInfo& info);

/// A chord without a key, after an argument that was not of its type, ends the process: Node-API
/// refuses the second exception.
Napi::Value KeyHold(const Napi::CallbackInfo& info);

}  // namespace deskhand
