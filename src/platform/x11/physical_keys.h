// What is held on real keyboards, whatever programs play.
#pragma once

#include <bitset>

#include "platform/x11/session.h"

namespace deskhand::platform {

/// The keys that are down on the keyboards that are no program's, by keycode. None down when the
/// server cannot tell. Thread: whoever has a session on the input channel.
std::bitset<256> PhysicallyHeldKeys(const Session& session);

}  // namespace deskhand::platform
