#include "displays/display_handlers.h"

#include "addon/arguments.h"
#include "displays/display_records.h"

namespace deskhand {
namespace {

Napi::Object DisplayRecordToJS(Napi::Env env, const DisplayRecord& record) {
  Napi::Object object = Napi::Object::New(env);
  object.Set("id", record.id);
  object.Set("width", record.width);
  object.Set("height", record.height);
  object.Set("isMain", record.is_main);
  object.Set("originX", record.origin_x);
  object.Set("originY", record.origin_y);
  object.Set("scaleFactor", record.scale_factor);
  object.Set("name", record.name);
  return object;
}

}  // namespace

Napi::Value ListDisplays(const Napi::CallbackInfo& info) {
  Napi::Array array = Napi::Array::New(info.Env());
  uint32_t index = 0;
  for (const DisplayRecord& record : DisplayRecords()) {
    array.Set(index++, DisplayRecordToJS(info.Env(), record));
  }
  return array;
}

Napi::Value GetDisplaySize(const Napi::CallbackInfo& info) {
  std::optional<uint32_t> wanted;
  if (IsNumberAt(info, 0)) wanted = ReadUint32(info[0]);
  return DisplayRecordToJS(info.Env(), DisplayRecordFor(wanted));
}

}  // namespace deskhand
