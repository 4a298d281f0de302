// A process that types, played by a connection of its own; and looks at the keyboard.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "platform/x11/keymap.h"
#include "platform/x11/session.h"

namespace deskhand {

class Typist {
 public:
  /// Connects at once: XCB reads the authority of a display by means that threads share.
  Typist();
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;

  void Type(std::u16string_view text);
  /// Types nothing yet.
  void Begin(std::u16string_view text);

 private:
  platform::Channel channel_;
};

/// The keys of a keyboard that have something on them.
std::map<uint8_t, platform::Key> UsedKeys(uint16_t keyboard = XCB_XKB_ID_USE_CORE_KBD);

/// Whether held keys repeat.
bool KeysRepeat();
void SetKeysRepeat(bool they_do);

/// Chooses one of the keyboard's layouts, as a panel does.
void LockGroup(uint8_t group);

}  // namespace deskhand
