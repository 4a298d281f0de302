#include "addon/arguments.h"

namespace deskhand {

bool IsNumberAt(const Napi::CallbackInfo& info, size_t index) {
  return index < info.Length() && info[index].IsNumber();
}

bool AreNumbers(const Napi::CallbackInfo& info, size_t first, size_t last) {
  for (size_t index = first; index <= last; ++index) {
    if (!IsNumberAt(info, index)) return false;
  }
  return true;
}

int32_t ReadInt32(const Napi::Value& value) { return value.As<Napi::Number>().Int32Value(); }

uint32_t ReadUint32(const Napi::Value& value) { return value.As<Napi::Number>().Uint32Value(); }

double ReadDouble(const Napi::Value& value) { return value.As<Napi::Number>().DoubleValue(); }

std::optional<std::vector<std::string>> ReadStrings(const Napi::Array& array) {
  const Napi::Env env = array.Env();
  std::vector<std::string> strings;
  const uint32_t length = array.Length();
  for (uint32_t index = 0; index < length; ++index) {
    const Napi::HandleScope element_scope(env);
    napi_value element = nullptr;
    // Checked by hand: an element's getter may throw, and its exception is the caller's to see.
    if (napi_get_element(env, array, index, &element) != napi_ok) {
      Napi::Error::New(env).ThrowAsJavaScriptException();
      return std::nullopt;
    }
    const Napi::Value value(env, element);
    if (value.IsString()) strings.push_back(value.As<Napi::String>().Utf8Value());
  }
  return strings;
}

}  // namespace deskhand
