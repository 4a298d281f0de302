#include "platform/x11/clipboard_reader.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "platform/x11/clipboard_atoms.h"
#include "platform/x11/event_wait.h"
#include "platform/x11/property.h"
#include "platform/x11/session.h"
#include "platform/x11/text_encodings.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kLongestText = 128 * 1024 * 1024;

/// A program that does not answer is given up before the server is.
constexpr std::chrono::milliseconds kServerPatience{50};

/// Long texts come in many pieces, each of which waits for two programs on a machine that may be
/// busy.
constexpr std::chrono::microseconds kTimePerByte{1};

/// However much has come by then.
constexpr std::chrono::milliseconds kLongestSilence{950};

/// A program may give the clipboard to another while it is asked.
constexpr int kMostAttempts = 5;

/// So many windows are kept for programs that answer late: most end with the error when theirs is
/// gone.
constexpr size_t kMostUnanswered = 32;

/// Bytes as they were handed over, and what they are.
struct Contents {
  xcb_atom_t type = XCB_ATOM_NONE;
  std::string bytes;
};

/// One reading, with a window of its own: an answer that comes too late is no other reading's.
class Reading {
 public:
  Reading(const Session& session, const ClipboardAtoms& atoms, Deadline deadline);
  ~Reading();
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

  std::optional<std::string> Text();

  /// Whether the program that had the clipboard is gone, and it may be another's.
  bool has_lost_owner() const { return has_lost_owner_; }

 private:
  bool Begin();
  /// None when the program does not have it so, or not in time.
  std::optional<Contents> ContentsAs(xcb_atom_t target);
  std::optional<Contents> TakeProperty();
  std::optional<Contents> TakePieces();
  std::optional<std::string> Decode(const Contents& contents) const;
  /// The next event, in time; null also when the owner is gone, and nothing is to come.
  EventPtr Next();
  /// When to give up what is waited for from now on; the server is given up soon after.
  Deadline EndOfWait() const;
  bool AwaitAnswer(xcb_atom_t target, bool* is_converted);
  bool AwaitPiece();

  const Session& session_;
  const ClipboardAtoms& atoms_;
  xcb_connection_t* const connection_;
  const xcb_window_t window_;
  xcb_window_t owner_ = XCB_NONE;
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  Deadline deadline_;
  bool is_over_ = false;
  bool is_unanswered_ = false;
  bool has_lost_owner_ = false;
};

Reading::Reading(const Session& session, const ClipboardAtoms& atoms, Deadline deadline)
    : session_(session),
      atoms_(atoms),
      connection_(session.connection()),
      window_(xcb_generate_id(session.connection())),
      deadline_(deadline) {
  const uint32_t values[] = {true, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, session.screen().root, -1, -1, 1, 1,
                    0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
}

Reading::~Reading() {
  const uint32_t no_events = 0;
  if (owner_ != XCB_NONE) {
    xcb_change_window_attributes(connection_, owner_, XCB_CW_EVENT_MASK, &no_events);
  }
  std::deque<xcb_window_t>& unanswered = session_.link().unanswered;
  if (is_unanswered_) {
    unanswered.push_back(window_);
  } else {
    xcb_destroy_window(connection_, window_);
  }
  if (unanswered.size() > kMostUnanswered) {
    xcb_destroy_window(connection_, unanswered.front());
    unanswered.pop_front();
  }
  xcb_flush(connection_);
}

/// Looks who has the clipboard, and what time it is. False when nobody has it.
bool Reading::Begin() {
  const auto reply = Await(connection_, xcb_get_selection_owner_reply,
                           xcb_get_selection_owner(connection_, atoms_.clipboard));
  if (!reply || reply->owner == XCB_NONE) return false;
  owner_ = reply->owner;
  const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, owner_, XCB_CW_EVENT_MASK, &events);
  const auto now = ServerTime(connection_, window_, atoms_.transfer, deadline_,
                              [](const xcb_generic_event_t&) {});
  time_ = now.value_or(XCB_CURRENT_TIME);
  return now.has_value();
}

std::optional<std::string> Reading::Text() {
  if (!Begin()) return std::nullopt;
  for (const xcb_atom_t target :
       {atoms_.utf8_string, atoms_.plain_utf8, xcb_atom_t{XCB_ATOM_STRING}}) {
    const auto contents = ContentsAs(target);
    if (auto text = contents ? Decode(*contents) : std::nullopt) return text;
    if (is_over_) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<Contents> Reading::ContentsAs(xcb_atom_t target) {
  is_unanswered_ = true;
  xcb_convert_selection(connection_, window_, atoms_.clipboard, target, atoms_.transfer, time_);
  bool is_converted = false;
  if (!AwaitAnswer(target, &is_converted) || !is_converted) return std::nullopt;
  auto contents = TakeProperty();
  if (!contents || contents->type != atoms_.incr) return contents;
  is_unanswered_ = true;
  return TakePieces();
}

Deadline Reading::EndOfWait() const {
  const Deadline end = std::min<Deadline>(deadline_, Clock::now() + kLongestSilence);
  session_.SetDeadline(end + kServerPatience);
  return end;
}

EventPtr Reading::Next() {
  EventPtr event = AwaitEvent(connection_, EndOfWait());
  if (event && event->response_type == XCB_DESTROY_NOTIFY) {
    const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(*event);
    has_lost_owner_ = end.window == owner_;
    if (has_lost_owner_) event = nullptr;
  }
  is_over_ = event == nullptr;
  return event;
}

bool Reading::AwaitAnswer(xcb_atom_t target, bool* is_converted) {
  while (const EventPtr event = Next()) {
    const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
    if (TypeOf(*event) != XCB_SELECTION_NOTIFY || answer.requestor != window_ ||
        answer.selection != atoms_.clipboard || answer.target != target) {
      continue;
    }
    *is_converted = answer.property != XCB_ATOM_NONE;
    is_unanswered_ = false;
    return true;
  }
  return false;
}

/// Takes what is in the property, and deletes it, which asks for the next piece.
std::optional<Contents> Reading::TakeProperty() {
  EndOfWait();
  const auto reply = Await(connection_, xcb_get_property_reply,
                           xcb_get_property(connection_, true, window_, atoms_.transfer,
                                            XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestText / 4));
  if (!reply || reply->bytes_after != 0) return std::nullopt;
  Contents contents{reply->type, ReadText(*reply)};
  deadline_ += kTimePerByte * contents.bytes.size();
  return contents;
}

bool Reading::AwaitPiece() {
  while (const EventPtr event = Next()) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (event->response_type == XCB_PROPERTY_NOTIFY && change.window == window_ &&
        change.atom == atoms_.transfer && change.state == XCB_PROPERTY_NEW_VALUE) {
      return true;
    }
  }
  return false;
}

std::optional<Contents> Reading::TakePieces() {
  Contents whole;
  while (AwaitPiece()) {
    auto piece = TakeProperty();
    if (!piece) break;
    if (piece->type == XCB_ATOM_NONE) continue;  // taken before: it came in two changes
    if (piece->bytes.empty()) {
      is_unanswered_ = false;
      return whole;
    }
    whole.type = piece->type;
    whole.bytes += piece->bytes;
    if (whole.bytes.size() > kLongestText) break;
  }
  is_over_ = true;  // another attempt would meet the rest of this one
  return std::nullopt;
}

std::optional<std::string> Reading::Decode(const Contents& contents) const {
  if (contents.type == XCB_ATOM_STRING) return Utf8FromLatin1(contents.bytes);
  if (contents.type == atoms_.utf8_string || contents.type == atoms_.plain_utf8) {
    return RepairedUtf8(contents.bytes);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> ReadClipboard(Deadline deadline) {
  const Session session(ClipboardReadChannel(), deadline);
  if (!session) return std::nullopt;
  auto& atoms = session.link().clipboard_atoms;
  if (!atoms) atoms = ClipboardAtoms::Make(session.connection());
  if (!atoms) return std::nullopt;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    Reading reading(session, *atoms, deadline - kServerPatience);
    auto text = reading.Text();
    if (text || !reading.has_lost_owner()) return text;
  }
  return std::nullopt;
}

}  // namespace deskhand::platform
