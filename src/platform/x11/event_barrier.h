// Waiting until programs have got to the events that they were sent.
// Thread: whoever has a session on the input channel.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "platform/x11/receiver.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

class EventBarrier {
 public:
  explicit EventBarrier(const PingAtoms& atoms);

  /// Waits for the program that has the keyboard's focus and for the one under the pointer to get
  /// to all that was posted before, for a second at most, and a moment longer.
  void Wait(const Session& session);

  /// A message of another client, which may be the answer to a ping.
  void Handle(const xcb_client_message_event_t& message);

 private:
  std::vector<Receiver> Receivers(const Session& session) const;

  const PingAtoms atoms_;
  uint32_t next_ping_;
  std::vector<uint32_t> unanswered_;
};

}  // namespace deskhand::platform
