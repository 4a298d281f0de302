// Plain values to JavaScript's and back. Thread: the JavaScript thread.
#pragma once

#include <string>
#include <vector>

#include <napi.h>

#include "core/value.h"

namespace macdoubles {

Napi::Value ToJS(Napi::Env env, const Value& value);

/// Undefined and whatever has no plain counterpart become null.
Value FromJS(const Napi::Value& value);

Value ListOf(const std::vector<std::string>& texts);

}  // namespace macdoubles
