// Which programs may still have key events to look up.
// A program that answers pings has looked up all that came before one when it answers it. Of
// others nothing is known but the time that has passed, and whether they rest.
// Pure; one thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/spare_keys.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

class PendingUses {
 public:
  /// After this time a program that answers no pings, and waits for something, is taken to have
  /// looked up its events. Mostly it has: it would wait for nothing else. It cannot be known.
  static constexpr auto kQuarantine = std::chrono::milliseconds(250);

  /// Keys of `use` went to `window`, or may have gone.
  void Add(xcb_window_t window, bool answers_pings, Use use, Deadline now);

  /// A ping with this number was sent to `window`.
  void OnPing(xcb_window_t window, uint32_t number);
  /// It was answered. Any other number is that of somebody else's ping.
  void OnPong(xcb_window_t window, uint32_t number);
  /// Answers are no longer heard: nothing was sent that may yet be answered.
  void ForgetPings();

  /// It has gone, and will look nothing up.
  void Remove(xcb_window_t window) { receivers_.erase(window); }
  /// Removes those whose quarantine is over, and of which `is_at_rest` says so.
  void Expire(Deadline now, const std::function<bool(xcb_window_t)>& is_at_rest);

  /// All uses up to this one are over.
  Use over() const;

  /// Those that answer pings, with no ping under way that was sent after their last use.
  std::vector<xcb_window_t> Unpinged() const;
  /// All that are pending.
  std::vector<xcb_window_t> Windows() const;
  /// When the next quarantine ends.
  std::optional<Deadline> NextExpiry() const;

 private:
  struct Receiver {
    bool answers_pings;
    Use first;  // of those that are not over
    Use last;
    Deadline last_at;
    std::map<uint32_t, Use> pings = {};  // sent after the use
  };

  std::map<xcb_window_t, Receiver> receivers_;
};

}  // namespace deskhand::platform
