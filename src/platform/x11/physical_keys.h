// What is held on real keyboards, whatever programs play.
// Thread: whoever has a session on the input channel.
#pragma once

#include <bitset>
#include <cstdint>
#include <vector>

#include "platform/x11/session.h"

namespace deskhand::platform {

struct RealKeyboard {
  uint8_t id = 0;         // device of the X Input extension
  std::bitset<256> held;  // by keycode
};

/// The devices that are keyboards, with or without those that programs play; none when the server
/// cannot tell.
std::vector<uint8_t> KeyboardDevices(xcb_connection_t* connection, bool with_played);

/// The keyboards but those that programs play; none when the server cannot tell.
std::vector<RealKeyboard> RealKeyboards(const Session& session);

/// Has the server see a key that is down on a real keyboard go down anew: it does not for itself
/// after another keyboard has let go of the same key.
void PressAnew(const Session& session, const RealKeyboard& keyboard, uint8_t keycode);

}  // namespace deskhand::platform
