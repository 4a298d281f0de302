#include "platform/x11/window_roles.h"

#include <algorithm>

#include "platform/x11/property.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// Of atoms in a list; no window needs so many.
constexpr uint32_t kMostAtoms = 64;
constexpr uint32_t kMarginCount = 4;
// The protocol has no larger windows.
constexpr uint32_t kWidestMargin = 32767;

}  // namespace

RoleCookies AskRole(xcb_connection_t* connection, const WindowAtoms& atoms, xcb_window_t window) {
  const auto get = [&](xcb_atom_t name, xcb_atom_t type, uint32_t length) {
    return xcb_get_property(connection, false, window, name, type, 0, length);
  };
  return {
      .type = get(atoms.net_wm_window_type, XCB_ATOM_ATOM, kMostAtoms),
      .state = get(atoms.net_wm_state, XCB_ATOM_ATOM, kMostAtoms),
      .mark = get(atoms.deskhand_hidden, XCB_ATOM_CARDINAL, 1),
      .frame = get(atoms.net_frame_extents, XCB_ATOM_CARDINAL, kMarginCount),
      .shadow = get(atoms.gtk_frame_extents, XCB_ATOM_CARDINAL, kMarginCount),
  };
}

std::optional<WindowRole> ReadRole(xcb_connection_t* connection, const WindowAtoms& atoms,
                                   const RoleCookies& cookies) {
  const auto take = [connection](xcb_get_property_cookie_t cookie) {
    return Await(connection, xcb_get_property_reply, cookie);
  };
  const auto type = take(cookies.type);
  const auto state = take(cookies.state);
  const auto mark = take(cookies.mark);
  const auto frame = take(cookies.frame);
  const auto shadow = take(cookies.shadow);
  if (!type || !state || !mark || !frame || !shadow) return std::nullopt;
  const std::vector<uint32_t> states = ReadCard32s(*state);
  return WindowRole{
      .type = TypeAmong(atoms, ReadCard32s(*type)),
      .is_minimized =
          std::find(states.begin(), states.end(), atoms.net_wm_state_hidden) != states.end(),
      .is_put_away = ReadCard32(*mark).has_value(),
      .frame = ReadMargins(ReadCard32s(*frame)),
      .shadow = ReadMargins(ReadCard32s(*shadow)).value_or(Margins()),
  };
}

bool IsOfRole(const WindowAtoms& atoms, xcb_atom_t property) {
  const auto all = {atoms.net_wm_window_type, atoms.net_wm_state, atoms.deskhand_hidden,
                    atoms.net_frame_extents, atoms.gtk_frame_extents};
  return std::find(all.begin(), all.end(), property) != all.end();
}

WindowType TypeAmong(const WindowAtoms& atoms, const std::vector<uint32_t>& types) {
  for (const uint32_t type : types) {
    for (const auto& [atom, meaning] : atoms.types) {
      if (atom == type) return meaning;
    }
  }
  return WindowType::kOrdinary;
}

WindowState StateOf(std::optional<uint32_t> value) {
  const auto is = [value](WindowState state) { return value == static_cast<uint32_t>(state); };
  if (is(WindowState::kNormal)) return WindowState::kNormal;
  return is(WindowState::kIconic) ? WindowState::kIconic : WindowState::kWithdrawn;
}

std::optional<Margins> ReadMargins(const std::vector<uint32_t>& values) {
  if (values.size() != kMarginCount) return std::nullopt;
  const bool is_valid = std::all_of(values.begin(), values.end(),
                                    [](uint32_t value) { return value <= kWidestMargin; });
  if (!is_valid) return std::nullopt;
  return Margins{static_cast<int32_t>(values[0]), static_cast<int32_t>(values[1]),
                 static_cast<int32_t>(values[2]), static_cast<int32_t>(values[3])};
}

}  // namespace deskhand::platform
