// Processes that type take turns: each may change the keyboard, and holds modifiers down.
// Thread: whoever has a session on the input channel.
#pragma once

#include <optional>

#include "platform/x11/session.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

/// Whoever owns a certain selection has the turn. The server takes it from a process that dies.
class TypingTurn {
 public:
  /// None when the server does not answer.
  static std::optional<TypingTurn> Start(const Session& session);

  /// Waits until `deadline` at most. False when another process still has it then.
  bool Take(const Session& session, Deadline deadline);
  void Give(const Session& session);

  /// Ours; no other process has a window of this number.
  xcb_window_t window() const { return window_; }

 private:
  TypingTurn(xcb_atom_t selection, xcb_window_t window) : selection_(selection), window_(window) {}

  /// None when the connection is broken.
  std::optional<bool> TryTake(const Session& session) const;

  xcb_atom_t selection_;
  xcb_window_t window_;
};

}  // namespace deskhand::platform
