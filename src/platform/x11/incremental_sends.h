// Texts too long for one property, handed over piece by piece: INCR of the ICCCM, section 2.7.2.
// Thread: the clipboard's.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/clipboard_atoms.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

using SharedText = std::shared_ptr<const std::string>;

/// All that are under way on one connection. One ends when its text has been taken, when its
/// requestor is gone, or when that has taken nothing for half a minute.
class IncrementalSends {
 public:
  IncrementalSends(xcb_connection_t* connection, const ClipboardAtoms& atoms)
      : connection_(connection), atoms_(atoms) {}

  /// The most that goes into a property at once, in bytes.
  size_t longest_piece() const;

  /// Announces `text` in a property of another client's window, in place of one that is under way
  /// there. False when there are too many.
  bool Start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, SharedText text);

  /// An event of the connection; those of no concern are ignored.
  void Handle(const xcb_generic_event_t& event);

  /// Ends those whose time is over, and says when the next one's will be; none when there are none.
  std::optional<Deadline> Expire();

 private:
  struct Send {
    xcb_window_t requestor = XCB_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    xcb_atom_t type = XCB_ATOM_NONE;
    SharedText text;
    size_t sent = 0;
    Deadline ends_at = {};
  };

  /// True when that was the end of it.
  bool PutNextPiece(Send& send) const;
  void Forget(std::vector<Send>::iterator send);

  xcb_connection_t* const connection_;
  const ClipboardAtoms& atoms_;
  std::vector<Send> sends_;
};

}  // namespace deskhand::platform
