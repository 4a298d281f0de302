// Values of window properties.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace deskhand::platform {

/// Longer texts are cut, in units of 4 bytes.
constexpr uint32_t kLongestTextWords = 16384;

/// The bytes of a text in whatever encoding; empty when the property is none.
inline std::string ReadText(const xcb_get_property_reply_t& property) {
  if (property.format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(&property)),
          static_cast<size_t>(xcb_get_property_value_length(&property))};
}

/// The first value of a property of 32-bit values.
inline std::optional<uint32_t> ReadCard32(const xcb_get_property_reply_t& property) {
  if (property.format != 32 || property.value_len < 1) return std::nullopt;
  uint32_t value = 0;
  std::memcpy(&value, xcb_get_property_value(&property), sizeof(value));
  return value;
}

/// All values of a property of 32-bit values.
inline std::vector<uint32_t> ReadCard32s(const xcb_get_property_reply_t& property) {
  if (property.format != 32) return {};
  std::vector<uint32_t> values(property.value_len);
  const void* const bytes = xcb_get_property_value(&property);
  if (!values.empty()) std::memcpy(values.data(), bytes, values.size() * sizeof(uint32_t));
  return values;
}

}  // namespace deskhand::platform
