// Posting the events of one call after the other.
// Space: points in the global desktop space. Thread: the one that has the turn.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>

#include "platform/geometry.h"
#include "platform/x11/input_state.h"
#include "platform/x11/modifiers.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// The JavaScript thread waits for each event to be handed over.
constexpr std::chrono::seconds kLongestWait{2};

/// Whose turn it is: one call's events at a time.
std::mutex& TurnOfCalls();

/// What the InputScope that is open on this thread announced, and what has become of it.
struct OpenScope {
  uint64_t flags = 0;
  std::u16string_view text = {};
  bool has_begun = false;   // something was posted
  bool has_failed = false;  // the server was out of reach: the rest does not wait for it, too
  bool is_typing = false;   // the keyboard was told of the text
  bool is_guarded = false;
};

OpenScope& CurrentScope();

/// One event's use of the input connection.
class Posting {
 public:
  explicit Posting(std::chrono::seconds longest = kLongestWait);

  /// Waits until the server has the events: whatever is asked next, on any connection, comes after.
  ~Posting();

  Posting(const Posting&) = delete;
  Posting& operator=(const Posting&) = delete;

  /// False when nothing can be posted.
  explicit operator bool() const { return state_ != nullptr; }

  const Session& session() const { return *session_; }
  InputDevice& device() const { return state_->device; }
  Keyboard* keyboard() const { return state_->keyboard.get(); }

  /// Moves the pointer. False when the server does not say where its monitors are.
  bool MoveTo(const Point& point);

  bool is_guarded() const { return CurrentScope().is_guarded || !state_->keyboard; }

  /// From here to the end of the scope, of all modifiers just those with `flags` are down. The
  /// first event that needs it decides. `question`: asked before, or none.
  void Guard(Locks locks, uint64_t flags, ModifierQuestion* question = nullptr) const;

  /// Tells the keyboard of the scope's text, once.
  void BeginText() const;

  /// Ends the scope: everything is let go of but the buttons.
  void Finish() const;

 private:
  void EndGuard() const;
  void Move(const Point& point, const PixelRect& primary) const;

  std::optional<Session> session_;
  InputState* state_ = nullptr;
  std::optional<uint64_t> settled_count_;  // of events, when the server has all of this one
};

}  // namespace deskhand::platform
