#include "platform/x11/event_barrier.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace deskhand::platform {
namespace {

// For programs that answer no pings.
constexpr std::chrono::milliseconds kMoment{50};

constexpr std::chrono::seconds kLongestWait{1};

}  // namespace

EventBarrier::EventBarrier(const PingAtoms& atoms) : atoms_(atoms), next_ping_(FirstPing()) {}

void EventBarrier::Handle(const xcb_client_message_event_t& message) {
  const auto number = PongNumber(message, atoms_);
  if (number) std::erase(unanswered_, *number);
}

std::vector<Receiver> EventBarrier::Receivers(const Session& session) const {
  std::vector<Receiver> receivers;
  const auto focus = QueryFocus(session);
  if (!focus) return receivers;
  receivers.push_back(FindReceiver(session, atoms_, *focus));
  const Receiver pointed = FindReceiver(session, atoms_, XCB_INPUT_FOCUS_POINTER_ROOT);
  if (pointed.window != receivers[0].window) receivers.push_back(pointed);
  std::erase_if(receivers, [&](const Receiver& receiver) {
    return receiver.window == XCB_NONE || receiver.window == session.screen().root;
  });
  return receivers;
}

void EventBarrier::Wait(const Session& session) {
  const Deadline start = Clock::now();
  ListenForPongs(session, true);
  unanswered_.clear();
  bool all_tell = true;
  for (const Receiver& receiver : Receivers(session)) {
    all_tell = all_tell && receiver.answers_pings;
    if (!receiver.answers_pings) continue;
    SendPing(session, atoms_, receiver.window, next_ping_);
    unanswered_.push_back(next_ping_++);
  }
  while (!unanswered_.empty() && Clock::now() < start + kLongestWait &&
         xcb_connection_has_error(session.connection()) == 0) {
    WaitForNews(session, start + kLongestWait);
    TakeEvents(session.link());
  }
  ListenForPongs(session, false);
  if (!all_tell) std::this_thread::sleep_until(start + kMoment);
}

}  // namespace deskhand::platform
