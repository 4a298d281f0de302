#include "platform/x11/event_barrier.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace deskhand::platform {
namespace {

// For programs that answer no pings, and for those that answer before they look further: Chromium
// takes the modifiers of the moment in which it gets to a button's event, not those of the event.
constexpr std::chrono::milliseconds kMoment{100};

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
  const Deadline deadline = Clock::now() + kLongestWait;
  ListenForPongs(session, true);
  unanswered_.clear();
  for (const Receiver& receiver : Receivers(session)) {
    if (!receiver.answers_pings) continue;
    SendPing(session, atoms_, receiver.window, next_ping_);
    unanswered_.push_back(next_ping_++);
  }
  while (!unanswered_.empty() && Clock::now() < deadline &&
         xcb_connection_has_error(session.connection()) == 0) {
    WaitForNews(session, deadline);
    TakeEvents(session.link());
  }
  ListenForPongs(session, false);
  std::this_thread::sleep_for(kMoment);
}

}  // namespace deskhand::platform
