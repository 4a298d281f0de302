#include "addon/arguments.h"

namespace deskhand {
namespace {

// Beyond this an array is mostly holes, of which there can be four billion.
constexpr uint32_t kLongestWalk = 1u << 20;

/// Makes the exception of a failed call pending, its own or the one that JavaScript threw.
void Rethrow(Napi::Env env) { Napi::Error::New(env).ThrowAsJavaScriptException(); }

/// Appends the element when it is a string. False when reading it threw: the exception is pending.
bool AppendString(const Napi::Array& array, uint32_t index, std::vector<std::string>* strings) {
  const Napi::Env env = array.Env();
  const Napi::HandleScope element_scope(env);
  napi_value element = nullptr;
  // Checked by hand: an element's getter may throw, and its exception is the caller's to see.
  if (napi_get_element(env, array, index, &element) != napi_ok) {
    Rethrow(env);
    return false;
  }
  const Napi::Value value(env, element);
  if (value.IsString()) strings->push_back(value.As<Napi::String>().Utf8Value());
  return true;
}

/// The indices that the array itself has elements at, in ascending order. None when an exception is
/// pending.
std::optional<std::vector<uint32_t>> OwnIndices(const Napi::Array& array) {
  const Napi::Env env = array.Env();
  napi_value keys = nullptr;
  if (napi_get_all_property_names(env, array, napi_key_own_only, napi_key_skip_symbols,
                                  napi_key_keep_numbers, &keys) != napi_ok) {
    Rethrow(env);
    return std::nullopt;
  }
  const Napi::Array names(env, keys);
  std::vector<uint32_t> indices;
  for (uint32_t position = 0; position < names.Length(); ++position) {
    const Napi::HandleScope name_scope(env);
    const Napi::Value name = names.Get(position);
    if (name.IsNumber()) indices.push_back(ReadUint32(name));
  }
  return indices;
}

}  // namespace

bool IsNumberAt(const Napi::CallbackInfo& info, size_t index) {
  return index < info.Length() && info[index].IsNumber();
}

bool IsStringAt(const Napi::CallbackInfo& info, size_t index) {
  return index < info.Length() && info[index].IsString();
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

std::string ReadUtf8(const Napi::Value& value) { return value.As<Napi::String>().Utf8Value(); }

std::u16string ReadUtf16(const Napi::Value& value) { return value.As<Napi::String>().Utf16Value(); }

std::optional<std::vector<std::string>> ReadStrings(const Napi::Array& array) {
  std::vector<std::string> strings;
  if (array.Length() <= kLongestWalk) {
    // Reading an element may change the length.
    for (uint32_t index = 0; index < array.Length(); ++index) {
      if (!AppendString(array, index, &strings)) return std::nullopt;
    }
    return strings;
  }
  const auto indices = OwnIndices(array);
  if (!indices) return std::nullopt;
  for (const uint32_t index : *indices) {
    if (!AppendString(array, index, &strings)) return std::nullopt;
  }
  return strings;
}

}  // namespace deskhand
