// What processes tell each other of the keys that they lend to characters, in a property of the
// root window. It outlives its writer, as what is on the keys does.
// Thread: whoever has a session on the input channel.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/spare_keys.h"

namespace deskhand::platform {

struct LentKeys {
  xcb_window_t writer = XCB_NONE;       // a window of the process that wrote it last
  std::vector<xcb_window_t> receivers;  // who may have events of these keys to look up
  std::map<uint8_t, KeySymbols> keys;

  bool operator==(const LentKeys&) const = default;
};

std::vector<uint32_t> Encode(const LentKeys& lent);
/// None for what was not written by Encode().
std::optional<LentKeys> Decode(const uint32_t* words, size_t count);

/// None when the server does not say; nothing is lent when there is no such property.
std::optional<LentKeys> ReadLentKeys(xcb_connection_t* connection, xcb_window_t root,
                                     xcb_atom_t property);
void WriteLentKeys(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t property,
                   const LentKeys& lent);

}  // namespace deskhand::platform
