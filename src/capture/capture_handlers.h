// calculateTargetSize, captureDisplay and captureRegion as JavaScript sees them.
// Thread: the JavaScript thread.
#pragma once

#include <napi.h>

namespace deskhand {

Napi::Value CalculateTargetSize(const Napi::CallbackInfo& info);
Napi::Value CaptureDisplay(const Napi::CallbackInfo& info);
Napi::Value CaptureRegion(const Napi::CallbackInfo& info);

}  // namespace deskhand
