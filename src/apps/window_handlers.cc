#include "apps/window_handlers.h"

#include "apps/window_records.h"

namespace deskhand {
namespace {

Napi::Object WindowRecordToJS(Napi::Env env, const WindowRecord& window) {
  Napi::Object object = Napi::Object::New(env);
  object.Set("bundleId", window.bundle_id);
  object.Set("pid", window.pid);
  object.Set("x", window.bounds.x);
  object.Set("y", window.bounds.y);
  object.Set("w", window.bounds.width);
  object.Set("h", window.bounds.height);
  object.Set("displayId", window.display_id);
  return object;
}

}  // namespace

Napi::Value GetWindowList(const Napi::CallbackInfo& info) {
  Napi::Array array = Napi::Array::New(info.Env());
  uint32_t index = 0;
  for (const WindowRecord& window : WindowRecords()) {
    const Napi::HandleScope window_scope(info.Env());
    array.Set(index++, WindowRecordToJS(info.Env(), window));
  }
  return array;
}

}  // namespace deskhand
