// The exported function about windows. Thread: the JavaScript thread.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value GetWindowList(const Napi::CallbackInfo& info);

}  // namespace deskhand
