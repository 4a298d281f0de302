#include "platform/x11/key_repeat.h"

#include <cstdint>
#include <utility>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {

std::unique_ptr<KeyRepeat> KeyRepeat::Start(const Session& session) {
  const auto property = MakeAtom(session.connection(), "_DESKHAND_SUSPENDED_REPEAT");
  if (!property) return nullptr;
  return std::unique_ptr<KeyRepeat>(new KeyRepeat(session, *property));
}

KeyRepeat::KeyRepeat(const Session& session, xcb_atom_t property)
    : connection_(session.connection()), root_(session.screen().root), property_(property) {}

void KeyRepeat::Set(uint32_t mode) const {
  xcb_change_keyboard_control(connection_, XCB_KB_AUTO_REPEAT_MODE, &mode);
}

void KeyRepeat::Suspend() {
  const auto control_cookie = xcb_get_keyboard_control(connection_);
  const auto property_cookie =
      xcb_get_property(connection_, false, root_, property_, XCB_ATOM_CARDINAL, 0, 1);
  const auto control = Await(connection_, xcb_get_keyboard_control_reply, control_cookie);
  const auto property = Await(connection_, xcb_get_property_reply, property_cookie);
  const bool do_repeat = control && control->global_auto_repeat == XCB_AUTO_REPEAT_MODE_ON;
  is_suspended_ = do_repeat || (property && property->value_len > 0);
  if (!do_repeat) return;
  constexpr uint32_t kSuspended = 1;
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, property_, XCB_ATOM_CARDINAL, 32,
                      1, &kSuspended);
  Set(XCB_AUTO_REPEAT_MODE_OFF);
}

void KeyRepeat::Resume() {
  if (!std::exchange(is_suspended_, false)) return;
  Set(XCB_AUTO_REPEAT_MODE_ON);
  xcb_delete_property(connection_, root_, property_);
  xcb_flush(connection_);
}

}  // namespace deskhand::platform
