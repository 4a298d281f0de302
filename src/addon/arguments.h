// How every handler checks its arguments and reports a bad call.
// Thread: the JavaScript thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <napi.h>

namespace deskhand {

/// Throws `ErrorType` (Napi::Error or Napi::TypeError) with the usage message; the value to return.
template <class ErrorType>
Napi::Value ThrowUsage(const Napi::CallbackInfo& info, const char* message) {
  ErrorType::New(info.Env(), message).ThrowAsJavaScriptException();
  return info.Env().Undefined();
}

/// True when an argument at `index` was passed and is a number.
bool IsNumberAt(const Napi::CallbackInfo& info, size_t index);

/// True when an argument at `index` was passed and is a string.
bool IsStringAt(const Napi::CallbackInfo& info, size_t index);

/// True when the arguments from `first` to `last`, both included, are numbers.
bool AreNumbers(const Napi::CallbackInfo& info, size_t first, size_t last);

/// Number conversions as Node-API makes them: truncation and wrap-around modulo 2^32, non-finite
/// values give 0 for the integers. A value that is no number gives 0 and leaves an exception
/// pending, the first one when there are several: the caller may go on.
int32_t ReadInt32(const Napi::Value& value);
uint32_t ReadUint32(const Napi::Value& value);
double ReadDouble(const Napi::Value& value);

/// The text of a string. A value that is none gives an empty text and leaves an exception pending,
/// as above.
std::string ReadUtf8(const Napi::Value& value);
std::u16string ReadUtf16(const Napi::Value& value);

/// The string elements of an array in order, as UTF-8; other elements are skipped. None when
/// reading an element threw: the exception is pending then.
std::optional<std::vector<std::string>> ReadStrings(const Napi::Array& array);

}  // namespace deskhand
