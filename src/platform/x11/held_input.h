// What this process holds down on its server.
// Thread: inside an InputScope.
#pragma once

#include <bitset>
#include <string>

namespace deskhand::platform {

/// The one place that knows it, whatever becomes of the connection that it was pressed through: the
/// server holds on to it.
struct HeldInput {
  std::string display;
  std::bitset<256> keys;  // by keycode; none between two calls
  std::bitset<256> buttons;
  std::bitset<256> overdue_buttons;  // that were to be released when the server was out of reach
};

HeldInput& Held();

}  // namespace deskhand::platform
