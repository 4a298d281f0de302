#include "values.h"

namespace macdoubles {
namespace {

struct Converter {
  Napi::Env env;

  Napi::Value operator()(std::monostate) const { return env.Null(); }
  Napi::Value operator()(bool truth) const { return Napi::Boolean::New(env, truth); }
  Napi::Value operator()(double number) const { return Napi::Number::New(env, number); }
  Napi::Value operator()(const std::string& text) const { return Napi::String::New(env, text); }

  Napi::Value operator()(const Value::List& items) const {
    Napi::Array array = Napi::Array::New(env);
    for (const Value& item : items) array.Set(array.Length(), ToJS(env, item));
    return array;
  }

  Napi::Value operator()(const Value::Object& members) const {
    Napi::Object object = Napi::Object::New(env);
    for (const auto& [key, value] : members) object.Set(key, ToJS(env, value));
    return object;
  }
};

Value ListFromJS(const Napi::Array& array) {
  Value::List items;
  for (uint32_t index = 0; index < array.Length(); ++index)
    items.push_back(FromJS(array.Get(index)));
  return items;
}

Value ObjectFromJS(const Napi::Object& object) {
  const Napi::Array keys = object.GetPropertyNames();
  Value::Object members;
  for (uint32_t index = 0; index < keys.Length(); ++index) {
    const std::string key = keys.Get(index).As<Napi::String>();
    members[key] = FromJS(object.Get(key));
  }
  return members;
}

}  // namespace

Napi::Value ToJS(Napi::Env env, const Value& value) { return value.Visit(Converter{env}); }

Value FromJS(const Napi::Value& value) {
  if (value.IsBoolean()) return value.As<Napi::Boolean>().Value();
  if (value.IsNumber()) return value.As<Napi::Number>().DoubleValue();
  if (value.IsString()) return value.As<Napi::String>().Utf8Value();
  if (value.IsArray()) return ListFromJS(value.As<Napi::Array>());
  if (value.IsObject()) return ObjectFromJS(value.As<Napi::Object>());
  return {};
}

Value ListOf(const std::vector<std::string>& texts) {
  return Value::List(texts.begin(), texts.end());
}

}  // namespace macdoubles
