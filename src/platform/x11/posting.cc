#include "platform/x11/posting.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/x11/call_snapshot.h"
#include "platform/x11/monitors.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

/// The nearest pixel of an axis of the root window, as the protocol can say it.
int16_t ToPixel(double value) {
  return static_cast<int16_t>(std::clamp(std::round(value), -32768.0, 32767.0));
}

}  // namespace

std::mutex& TurnOfCalls() {
  static std::mutex& mutex = *new std::mutex;
  return mutex;
}

OpenScope& CurrentScope() {
  thread_local OpenScope scope;
  return scope;
}

Posting::Posting(std::chrono::seconds longest) {
  OpenScope& scope = CurrentScope();
  if (scope.has_failed) return;
  session_.emplace(InputChannel(), Clock::now() + longest);
  if (*session_) state_ = InputState::Of(*session_);
  if (!state_) {
    scope.has_failed = true;
  } else if (!std::exchange(scope.has_begun, true)) {
    state_->device.LetGo();  // of what an earlier call could not
  }
}

Posting::~Posting() {
  if (!state_) return;
  if (state_->device.count() != settled_count_) {
    const auto reply = Await(session_->connection(), xcb_get_input_focus_reply,
                             xcb_get_input_focus(session_->connection()));
    state_->device.Settle(reply != nullptr);
  }
  if (!session_->error().empty()) CurrentScope().has_failed = true;
}

bool Posting::MoveTo(const Point& point) {
  CallSnapshot alone;
  CallSnapshot& snapshot = CurrentCallSnapshot() ? *CurrentCallSnapshot() : alone;
  // Monitors hardly ever change: the pointer moves as if they had not while they are asked for.
  const auto guess = state_->primary;
  if (guess) Move(point, *guess);
  if (!snapshot.monitors) {
    snapshot.monitors = QueryMonitors(*session_);
    settled_count_ = state_->device.count();
  }
  if (!snapshot.monitors || snapshot.monitors->empty()) return false;
  const PixelRect& primary = snapshot.monitors->front().bounds;
  if (guess != primary) Move(point, primary);
  state_->primary = primary;
  return true;
}

void Posting::Move(const Point& point, const PixelRect& primary) const {
  state_->device.MoveTo(ToPixel(primary.x + point.x), ToPixel(primary.y + point.y));
}

void Posting::Guard(Locks locks, uint64_t flags, ModifierQuestion* question) const {
  if (is_guarded()) return;
  EndGuard();  // of a scope that could not reach the server at its end
  const auto modifiers =
      question ? question->Take() : ModifierQuestion(session_->connection()).Take();
  if (!modifiers) return;
  state_->guard.emplace(*session_, state_->device, *state_->keyboard, *modifiers, flags, locks);
  CurrentScope().is_guarded = true;
}

void Posting::BeginText() const {
  if (std::exchange(CurrentScope().is_typing, true)) return;
  keyboard()->BeginText(*session_, CurrentScope().text);
}

void Posting::Finish() const {
  if (keyboard() && CurrentScope().is_typing) keyboard()->EndText(*session_, device());
  EndGuard();
  device().LetGo();
}

void Posting::EndGuard() const {
  if (!state_->guard) return;
  state_->guard->End(*session_, state_->device, *state_->keyboard);
  state_->guard.reset();
}

}  // namespace deskhand::platform
