// Keys that repeat while they are held.
// A tap is a press and a release; where the server is kept from its work between the two for as
// long as keys take to repeat, it would be several: seen on a machine that stood still for a
// second. Thread: whoever has a session on the input channel, and its turn to type.
#pragma once

#include <memory>

#include "platform/x11/session.h"

namespace deskhand::platform {

class KeyRepeat {
 public:
  /// Null when the server does not answer.
  static std::unique_ptr<KeyRepeat> Start(const Session& session);

  /// No key repeats from here on, on any keyboard.
  void Suspend();

  /// Keys repeat again, if they did; also if they did before a process that died meanwhile.
  void Resume();

 private:
  KeyRepeat(const Session& session, xcb_atom_t property);

  void Set(uint32_t mode) const;

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const xcb_atom_t property_;  // on the root window while keys do not repeat that did
  bool is_suspended_ = false;
};

}  // namespace deskhand::platform
