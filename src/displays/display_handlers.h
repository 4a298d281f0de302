// listDisplays and getDisplaySize as JavaScript sees them. Thread: the JavaScript thread.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value ListDisplays(const Napi::CallbackInfo& info);
Napi::Value GetDisplaySize(const Napi::CallbackInfo& info);

}  // namespace deskhand
