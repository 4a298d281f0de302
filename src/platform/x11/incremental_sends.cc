#include "platform/x11/incremental_sends.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

namespace deskhand::platform {
namespace {

constexpr size_t kLongestPiece = 256 * 1024;
// What a request takes besides the bytes of the property.
constexpr size_t kRequestHead = 64;
// Each keeps a text in memory, which may be one that is on the clipboard no more.
constexpr size_t kMostSends = 32;
// Programs that are stopped go on where they were, unless it takes longer.
constexpr std::chrono::seconds kPatience{30};

}  // namespace

size_t IncrementalSends::longest_piece() const {
  const size_t longest_request = 4 * size_t{xcb_get_maximum_request_length(connection_)};
  return std::min(kLongestPiece, longest_request - kRequestHead);
}

bool IncrementalSends::Start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                             SharedText text) {
  std::erase_if(sends_, [&](const Send& send) {
    return send.requestor == requestor && send.property == property;
  });
  if (sends_.size() >= kMostSends) return false;
  // Before the property is there: its deletion is what asks for the first piece.
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, requestor, XCB_CW_EVENT_MASK, &events);
  const auto size = static_cast<uint32_t>(std::min<size_t>(text->size(), INT32_MAX));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, atoms_.incr, 32, 1,
                      &size);
  sends_.push_back({requestor, property, type, std::move(text), 0, Clock::now() + kPatience});
  return true;
}

void IncrementalSends::Handle(const xcb_generic_event_t& event) {
  if (event.response_type == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.state != XCB_PROPERTY_DELETE) return;
    const auto send = std::find_if(sends_.begin(), sends_.end(), [&](const Send& candidate) {
      return candidate.requestor == change.window && candidate.property == change.atom;
    });
    if (send != sends_.end() && PutNextPiece(*send)) Forget(send);
  } else if (event.response_type == XCB_DESTROY_NOTIFY) {
    const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
    std::erase_if(sends_, [&](const Send& send) { return send.requestor == end.window; });
  }
}

bool IncrementalSends::PutNextPiece(Send& send) const {
  const size_t size = std::min(send.text->size() - send.sent, longest_piece());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, send.requestor, send.property, send.type,
                      8, static_cast<uint32_t>(size), send.text->data() + send.sent);
  send.sent += size;
  send.ends_at = Clock::now() + kPatience;
  return size == 0;  // an empty piece is the end
}

void IncrementalSends::Forget(std::vector<Send>::iterator send) {
  const xcb_window_t requestor = send->requestor;
  sends_.erase(send);
  const bool has_more = std::any_of(sends_.begin(), sends_.end(), [&](const Send& other) {
    return other.requestor == requestor;
  });
  if (has_more) return;
  const uint32_t no_events = 0;
  xcb_change_window_attributes(connection_, requestor, XCB_CW_EVENT_MASK, &no_events);
}

std::optional<Deadline> IncrementalSends::Expire() {
  const auto by_end = [](const Send& a, const Send& b) { return a.ends_at < b.ends_at; };
  for (;;) {
    const auto first = std::min_element(sends_.begin(), sends_.end(), by_end);
    if (first == sends_.end()) return std::nullopt;
    if (first->ends_at > Clock::now()) return first->ends_at;
    Forget(first);
  }
}

}  // namespace deskhand::platform
