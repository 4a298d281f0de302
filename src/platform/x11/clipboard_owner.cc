#include "platform/x11/clipboard_owner.h"

#include <initializer_list>
#include <utility>
#include <vector>

#include "platform/x11/event_wait.h"
#include "platform/x11/text_encodings.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kMostPairs = 64;

/// Both clocks and request numbers start anew when they are full.
bool IsBefore(uint32_t a, uint32_t b) { return static_cast<int32_t>(a - b) < 0; }

}  // namespace

std::unique_ptr<ClipboardOwner> ClipboardOwner::Start(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  xcb_prefetch_maximum_request_length(connection);
  auto atoms = ClipboardAtoms::Make(connection);
  if (!atoms) return nullptr;
  const xcb_window_t window = xcb_generate_id(connection);
  const uint32_t values[] = {true, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, session.screen().root, -1, -1, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  return std::unique_ptr<ClipboardOwner>(new ClipboardOwner(connection, window, std::move(atoms)));
}

ClipboardOwner::ClipboardOwner(xcb_connection_t* connection, xcb_window_t window,
                               std::unique_ptr<const ClipboardAtoms> atoms)
    : connection_(connection),
      window_(window),
      atoms_(std::move(atoms)),
      sends_(connection, *atoms_) {}

ClipboardOwner::~ClipboardOwner() { EndHandover(); }

std::optional<xcb_timestamp_t> ClipboardOwner::Now(Deadline deadline) {
  return ServerTime(connection_, window_, atoms_->transfer, deadline,
                    [this](const xcb_generic_event_t& event) { Handle(event); });
}

bool ClipboardOwner::Take(SharedText text, Deadline deadline) {
  const auto now = Now(deadline);
  if (!now) return false;
  last_take_ = xcb_set_selection_owner(connection_, window_, atoms_->clipboard, *now).sequence;
  const auto reply = Await(connection_, xcb_get_selection_owner_reply,
                           xcb_get_selection_owner(connection_, atoms_->clipboard));
  const bool is_ours = reply && reply->owner == window_;
  // Who asked for the text before this one gets this one, and not nothing.
  if (!text_) ours_since_ = *now;
  taken_at_ = *now;
  text_ = is_ours ? std::move(text) : nullptr;
  latin1_.reset();
  return is_ours;
}

void ClipboardOwner::HandOver(Deadline deadline, std::function<void()> done) {
  EndHandover();
  handed_over_ = std::move(done);
  const auto now = text_ ? Now(deadline) : std::nullopt;
  if (!now) return EndHandover();
  PutAtoms(window_, atoms_->transfer, {atoms_->utf8_string});
  // Without a manager the server itself answers that nobody converts it.
  xcb_convert_selection(connection_, window_, atoms_->manager, atoms_->save_targets,
                        atoms_->transfer, *now);
}

void ClipboardOwner::EndHandover() {
  if (const auto done = std::exchange(handed_over_, nullptr)) done();
}

void ClipboardOwner::Handle(const xcb_generic_event_t& event) {
  // The answer of a clipboard manager is all that other programs are to send.
  if (IsSent(event) && TypeOf(event) != XCB_SELECTION_NOTIFY) return;
  switch (TypeOf(event)) {
    case XCB_SELECTION_REQUEST:
      return Answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    case XCB_SELECTION_CLEAR: {
      const auto& loss = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
      // One on its way since before the last take is of no meaning.
      const bool is_late = IsBefore(event.full_sequence, last_take_);
      if (loss.selection == atoms_->clipboard && !is_late) text_ = nullptr;
      return;
    }
    case XCB_SELECTION_NOTIFY: {
      const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
      if (answer.selection == atoms_->manager) EndHandover();
      return;
    }
    default:
      return sends_.Handle(event);
  }
}

void ClipboardOwner::Answer(const xcb_selection_request_event_t& request) {
  // Programs of before 1988 name no property.
  const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
  const bool is_in_time = request.time == XCB_CURRENT_TIME || !IsBefore(request.time, ours_since_);
  bool is_done =
      text_ && request.selection == atoms_->clipboard && is_in_time && request.requestor != window_;
  if (is_done && request.target == atoms_->multiple) {
    is_done = request.property != XCB_ATOM_NONE && ConvertMultiple(request.requestor, property);
  } else if (is_done) {
    is_done = Convert(request.requestor, request.target, property);
  }
  union {
    xcb_selection_notify_event_t notify;
    char bytes[32];
  } event = {};
  event.notify.response_type = XCB_SELECTION_NOTIFY;
  event.notify.time = request.time;
  event.notify.requestor = request.requestor;
  event.notify.selection = request.selection;
  event.notify.target = request.target;
  event.notify.property = is_done ? property : xcb_atom_t{XCB_ATOM_NONE};
  xcb_send_event(connection_, false, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.bytes);
}

bool ClipboardOwner::Convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
  const ClipboardAtoms& atoms = *atoms_;
  if (target == atoms.utf8_string || target == atoms.plain_utf8 || target == atoms.plain) {
    return PutText(requestor, property, target, text_);
  }
  // The owner chooses an encoding, and names it by the type.
  if (target == atoms.text) return PutText(requestor, property, atoms.utf8_string, text_);
  if (target == XCB_ATOM_STRING) return PutText(requestor, property, target, Latin1());
  if (target == atoms.targets) {
    PutAtoms(requestor, property,
             {atoms.targets, atoms.multiple, atoms.timestamp, atoms.save_targets, atoms.utf8_string,
              atoms.plain_utf8, atoms.plain, XCB_ATOM_STRING, atoms.text});
  } else if (target == atoms.timestamp) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER,
                        32, 1, &taken_at_);
  } else if (target == atoms.save_targets) {
    // Something to do rather than something to give; a clipboard manager may ask for it, too.
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, atoms.null, 32, 0,
                        nullptr);
  } else {
    return false;
  }
  return true;
}

bool ClipboardOwner::ConvertMultiple(xcb_window_t requestor, xcb_atom_t property) {
  const auto reply = Await(connection_, xcb_get_property_reply,
                           xcb_get_property(connection_, false, requestor, property,
                                            XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * kMostPairs));
  if (!reply || reply->format != 32 || reply->bytes_after != 0) return false;
  const auto* const values = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  std::vector<xcb_atom_t> pairs(values, values + reply->value_len / 2 * 2);
  for (size_t i = 0; i < pairs.size(); i += 2) {
    const bool is_done =
        pairs[i + 1] != XCB_ATOM_NONE && Convert(requestor, pairs[i], pairs[i + 1]);
    if (!is_done) pairs[i + 1] = XCB_ATOM_NONE;
  }
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, reply->type, 32,
                      pairs.size(), pairs.data());
  return true;
}

bool ClipboardOwner::PutText(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                             SharedText text) {
  if (text->size() > sends_.longest_piece()) {
    return sends_.Start(requestor, property, type, std::move(text));
  }
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                      static_cast<uint32_t>(text->size()), text->data());
  return true;
}

void ClipboardOwner::PutAtoms(xcb_window_t window, xcb_atom_t property,
                              std::initializer_list<xcb_atom_t> atoms) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32,
                      static_cast<uint32_t>(atoms.size()), atoms.begin());
}

SharedText ClipboardOwner::Latin1() {
  SharedText latin1 = latin1_.lock();
  if (!latin1) latin1 = std::make_shared<const std::string>(Latin1FromUtf8(*text_));
  latin1_ = latin1;
  return latin1;
}

}  // namespace deskhand::platform
