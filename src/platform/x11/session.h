// Exclusive, time-bounded use of a connection to the X server.
// A connection is made when it is first needed and made anew, with the environment's DISPLAY of
// that moment, when the one before was lost. Threads: any; a session stays on its thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "platform/x11/shared_memory.h"
#include "platform/x11/socket_deadline.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

class ClipboardOwner;
class Composition;
class WindowWatch;
class WindowOwners;
struct ClipboardAtoms;
struct DesktopLook;
struct InputState;

/// One connection, its screen and what the server can do.
struct Link {
  Link(xcb_connection_t* connection, int screen_number, std::string display);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  xcb_connection_t* const connection;
  const std::string display;
  const xcb_screen_t* screen = nullptr;
  const int screen_number;
  bool is_usable = false;                // it told all of the following
  bool has_monitors = false;             // RandR 1.5
  bool has_cursor_images = false;        // XFixes 1
  bool has_shared_memory = false;        // MIT-SHM 1.2, which passes memory as a file descriptor
  std::shared_ptr<SharedMemory> memory;  // for pictures, made when first needed
  std::unique_ptr<WindowWatch> window_watch;              // since windows were first looked at
  std::unique_ptr<WindowOwners> window_owners;            // since applications were
  std::shared_ptr<const DesktopLook> desktop_look;        // the last one
  std::unique_ptr<InputState> input;                      // since the first event was posted
  std::unique_ptr<Composition> composition;               // since one was
  std::unique_ptr<ClipboardOwner> clipboard;              // since a text was put there
  std::unique_ptr<const ClipboardAtoms> clipboard_atoms;  // since a text was read from there
  std::deque<xcb_window_t>
      unanswered;  // windows of readings that may be answered yet, oldest first
  std::map<xcb_atom_t, std::string> atom_names;  // of monitors; they last as long as the server
  uint64_t error_count = 0;                      // errors of requests that have no reply
};

/// Takes the events that have come, and counts errors. Those of no use are dropped: every client
/// gets some unasked (keyboard mappings, for one), and they would pile up. False when there were
/// none.
bool TakeEvents(Link& link);

/// The place of one long-lived connection. Sessions on a channel take turns.
struct Channel {
  std::mutex mutex;
  std::condition_variable free;
  bool is_taken = false;
  std::shared_ptr<Link> link;  // the current session's; replaced under the registry's lock only
};

/// For questions that are answered at once, from the JavaScript thread.
Channel& QueryChannel();

/// For pictures; used on the capture thread only.
Channel& CaptureChannel();

/// For input: one call's events at a time.
Channel& InputChannel();

/// For the text that this process has put on the clipboard; used on the clipboard's thread only.
Channel& ClipboardChannel();

/// For reading the texts of others, which they may take their time to give.
Channel& ClipboardReadChannel();

/// Takes what has come on a channel that only the calling thread uses, and sends what that asks
/// for, until `deadline`, which breaks the connection. A broken one is given up. False when there
/// is no connection, then.
bool ServeChannel(Channel& channel, Deadline deadline);

class Session {
 public:
  /// Waits for its turn and for a connection until `deadline`, which then bounds every wait for a
  /// reply: whoever waits longer finds the connection broken.
  Session(Channel& channel, Deadline deadline);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// False when there is no connection; error() says why.
  explicit operator bool() const { return link_ != nullptr; }

  /// Why there is no connection; after a missing reply, what became of the connection; empty when
  /// it is well.
  std::string error() const;

  Link& link() const { return *link_; }

  /// Moves the deadline, for a wait that is not for the server but asks it now and then.
  void SetDeadline(Deadline deadline) const {
    if (!error().empty()) return;  // the connection is broken, or about to be
    bound_.reset();
    bound_.emplace(link_->connection, deadline);
  }

  /// Gives the connection up at the end of the session, and with it all that the server keeps or
  /// sends on its account.
  void Abandon() { is_abandoned_ = true; }

  xcb_connection_t* connection() const { return link_->connection; }
  const xcb_screen_t& screen() const { return *link_->screen; }

 private:
  bool TakeTurn(Deadline deadline);
  void OpenLink(Deadline deadline);

  Channel& channel_;
  const bool has_turn_;
  std::shared_ptr<Link> link_;
  mutable std::optional<SocketDeadline> bound_;  // how long we wait is no part of what we know
  std::string error_;
  bool is_abandoned_ = false;
};

}  // namespace deskhand::platform
