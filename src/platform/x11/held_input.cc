#include "platform/x11/held_input.h"

namespace deskhand::platform {

// Never destroyed, like the threads and connections.
HeldInput& Held() {
  static HeldInput& held = *new HeldInput;
  return held;
}

}  // namespace deskhand::platform
