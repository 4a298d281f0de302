// This process as the owner of the clipboard: the CLIPBOARD selection of the ICCCM, section 2.
// Thread: the clipboard's, as all use of its connection.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <xcb/xcb.h>

#include "platform/x11/clipboard_atoms.h"
#include "platform/x11/incremental_sends.h"
#include "platform/x11/session.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

class ClipboardOwner {
 public:
  /// Null when the server does not answer.
  static std::unique_ptr<ClipboardOwner> Start(const Session& session);
  /// Ends a handover that is under way.
  ~ClipboardOwner();
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;

  /// Takes the clipboard over with a text, in one step for all others. False when another program
  /// took it at the same moment, or the server does not answer until `deadline`.
  bool Take(SharedText text, Deadline deadline);

  /// Null when another program has the clipboard, as far as the server has told.
  const SharedText& text() const { return text_; }

  /// Asks the clipboard manager to keep the text, and calls `done` when it has answered, or when
  /// nothing can come of it. Requests are served meanwhile.
  void HandOver(Deadline deadline, std::function<void()> done);

  /// An event of the connection.
  void Handle(const xcb_generic_event_t& event);

  /// See IncrementalSends.
  std::optional<Deadline> Expire() { return sends_.Expire(); }

 private:
  ClipboardOwner(xcb_connection_t* connection, xcb_window_t window,
                 std::unique_ptr<const ClipboardAtoms> atoms);

  std::optional<xcb_timestamp_t> Now(Deadline deadline);
  void Answer(const xcb_selection_request_event_t& request);
  bool Convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  bool ConvertMultiple(xcb_window_t requestor, xcb_atom_t property);
  bool PutText(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, SharedText text);
  void PutAtoms(xcb_window_t window, xcb_atom_t property, std::initializer_list<xcb_atom_t> atoms);
  SharedText Latin1();
  void EndHandover();

  xcb_connection_t* const connection_;
  const xcb_window_t window_;
  const std::unique_ptr<const ClipboardAtoms> atoms_;
  IncrementalSends sends_;
  SharedText text_;
  std::weak_ptr<const std::string> latin1_;  // of text_, while anyone takes it
  xcb_timestamp_t taken_at_ = 0;
  xcb_timestamp_t ours_since_ = 0;  // with another text perhaps
  uint32_t last_take_ = 0;          // number of the request
  std::function<void()> handed_over_;
};

}  // namespace deskhand::platform
