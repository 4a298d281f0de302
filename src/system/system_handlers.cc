#include "system/system_handlers.h"

#include "addon/arguments.h"
#include "platform/permissions.h"
#include "system/clipboard.h"

namespace deskhand {

Napi::Value ReadClipboard(const Napi::CallbackInfo& info) {
  const auto text = ReadClipboardText();
  if (!text) return info.Env().Null();
  return Napi::String::New(info.Env(), *text);
}

Napi::Value WriteClipboard(const Napi::CallbackInfo& info) {
  if (IsStringAt(info, 0)) WriteClipboardText(ReadUtf8(info[0]));
  return info.Env().Undefined();
}

Napi::Value CheckAccessibility(const Napi::CallbackInfo& info) {
  return Napi::Boolean::New(info.Env(), platform::HasAccessibility());
}

Napi::Value RequestAccessibility(const Napi::CallbackInfo& info) {
  return Napi::Boolean::New(info.Env(), platform::RequestAccessibility());
}

Napi::Value CheckScreenRecording(const Napi::CallbackInfo& info) {
  return Napi::Boolean::New(info.Env(), platform::HasScreenRecording());
}

Napi::Value RequestScreenRecording(const Napi::CallbackInfo& info) {
  return Napi::Boolean::New(info.Env(), platform::RequestScreenRecording());
}

}  // namespace deskhand
