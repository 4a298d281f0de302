#include "platform/x11/keyboard.h"

namespace deskhand::platform {

Keyboard::Keyboard() = default;
Keyboard::~Keyboard() = default;

std::unique_ptr<Keyboard> Keyboard::Start(const Session&) {
  return std::unique_ptr<Keyboard>(new Keyboard());
}

void Keyboard::Handle(const xcb_generic_event_t&) {}

std::optional<uint8_t> Keyboard::KeycodeFor(uint16_t) const { return std::nullopt; }

std::optional<uint8_t> Keyboard::KeycodeOfSymbol(xkb_keysym_t) const { return std::nullopt; }

}  // namespace deskhand::platform
