#include "platform/x11/keyboard.h"

#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

#include "platform/x11/key_codes.h"

namespace deskhand::platform {

Keyboard::Keyboard(std::unique_ptr<LiveKeymap> keymap, std::unique_ptr<TextTyping> typing,
                   const PingAtoms& atoms)
    : keymap_(std::move(keymap)), typing_(std::move(typing)), barrier_(atoms) {}

std::unique_ptr<Keyboard> Keyboard::Start(const Session& session) {
  auto keymap = LiveKeymap::Start(session);
  if (!keymap) return nullptr;
  const auto atoms = QueryPingAtoms(session.connection());
  if (!atoms) return nullptr;
  auto typing = TextTyping::Start(session, *keymap, *atoms);
  if (!typing) return nullptr;
  return std::unique_ptr<Keyboard>(new Keyboard(std::move(keymap), std::move(typing), *atoms));
}

std::optional<uint8_t> Keyboard::KeycodeFor(uint16_t virtual_key_code) const {
  const KeyPlace* const place = FindKeyPlace(virtual_key_code);
  if (!place || place->symbol == XKB_KEY_NoSymbol || !keymap_->Refresh()) return std::nullopt;
  const auto key = keymap_->FindKey(place->symbol, place->keycode);
  if (key) return key;
  // A key that is lent would type a character.
  if (place->keycode == 0 || keymap_->IsLent(place->keycode)) return std::nullopt;
  return place->keycode;
}

std::optional<uint8_t> Keyboard::KeycodeOfSymbol(xkb_keysym_t symbol) const {
  if (!keymap_->Refresh()) return std::nullopt;
  return keymap_->FindKey(symbol, 0);
}

}  // namespace deskhand::platform
