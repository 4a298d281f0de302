#include "input/keyboard_handlers.h"

#include <string>

#include "addon/arguments.h"
#include "input/chord.h"
#include "input/key_sequences.h"
#include "input/text_runs.h"

namespace deskhand {
namespace {

/// Throws the error of `function` for a chord that names no key; the value to return.
Napi::Value ThrowNoKey(const Napi::CallbackInfo& info, const std::string& function,
                       const std::string& chord) {
  const std::string message = function + ": no valid key found in chord '" + chord + "'";
  Napi::Error::New(info.Env(), message).ThrowAsJavaScriptException();
  return info.Env().Undefined();
}

}  // namespace

Napi::Value TypeText(const Napi::CallbackInfo& info) {
  if (!IsStringAt(info, 0)) {
    return ThrowUsage<Napi::TypeError>(info, "typeText requires (text: string)");
  }
  EnterText(ReadUtf16(info[0]));
  return Napi::Boolean::New(info.Env(), true);
}

Napi::Value KeyPress(const Napi::CallbackInfo& info) {
  if (!IsStringAt(info, 0)) {
    return ThrowUsage<Napi::TypeError>(info, "keyPress requires (chord: string)");
  }
  const std::string chord = ReadUtf8(info[0]);
  const int32_t taps = IsNumberAt(info, 1) ? ReadInt32(info[1]) : 1;
  const ParsedChord parsed = ParseChord(chord);
  if (!parsed.has_key) return ThrowNoKey(info, "keyPress", chord);
  TapChord(parsed, taps);
  return Napi::Boolean::New(info.Env(), true);
}

Napi::Value KeyHold(const Napi::CallbackInfo& info) {
  if (info.Length() < 2) {
    return ThrowUsage<Napi::TypeError>(info,
                                       "keyHold requires (chord: string, durationMs: number)");
  }
  // Types are not tested here: either reading may leave its error pending, and the call goes on.
  const std::string chord = ReadUtf8(info[0]);
  const int32_t duration_ms = ReadInt32(info[1]);
  const ParsedChord parsed = ParseChord(chord);
  if (!parsed.has_key) return ThrowNoKey(info, "keyHold", chord);
  HoldChord(parsed, duration_ms);
  return Napi::Boolean::New(info.Env(), true);
}

}  // namespace deskhand
