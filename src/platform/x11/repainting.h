// Windows of other programs that are made to paint anew.
// Space: pixels of the root window. Thread: the capture thread.
#pragma once

#include <map>
#include <vector>

#include <xcb/damage.h>

#include "platform/x11/pixel_rect.h"
#include "platform/x11/session.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// Blackens parts of windows, and waits for their programs to paint over that.
class Repainting {
 public:
  /// `damage_event` is the number of XDamage's event.
  explicit Repainting(uint8_t damage_event) : damage_event_(damage_event) {}

  /// Blackens `areas` of the window's contents, and all of it when its program paints it anew and
  /// `may_take_all`; where it, or a window inside of it, has a
  /// background, the server paints that at once, and programs that care are told to paint. The
  /// server must be grabbed; the requests need an ErrorTrap. False when the server does not answer.
  bool Blacken(const Session& session, const TopWindow& window, const std::vector<PixelRect>& areas,
               bool may_take_all);

  /// From now on what is painted counts. XDamage begins by reporting the whole window.
  void Arm() { is_armed_ = true; }

  /// Whether a program has not painted yet what it was told to.
  bool is_waiting() const { return !watches_.empty(); }

  /// Waits until all have, or for `longest`. The server must not be grabbed.
  void Await(const Session& session, Clock::duration longest);

  void Handle(const xcb_generic_event_t& event);

 private:
  struct Watch {
    std::vector<PixelRect> missing;  // relative to the window's origin
  };

  const uint8_t damage_event_;
  bool is_armed_ = false;
  std::map<xcb_damage_damage_t, Watch> watches_;
  bool has_painted_ = false;
};

}  // namespace deskhand::platform
