#include "platform/x11/pending_uses.h"

#include <algorithm>

namespace deskhand::platform {

void PendingUses::Add(xcb_window_t window, bool answers_pings, Use use, Deadline now) {
  Receiver& receiver =
      receivers_.try_emplace(window, Receiver{answers_pings, use, use, now}).first->second;
  receiver.answers_pings = answers_pings;
  receiver.last = std::max(receiver.last, use);
  receiver.last_at = now;
}

void PendingUses::OnPing(xcb_window_t window, uint32_t number) {
  const auto found = receivers_.find(window);
  if (found != receivers_.end()) found->second.pings[number] = found->second.last;
}

void PendingUses::OnPong(xcb_window_t window, uint32_t number) {
  const auto found = receivers_.find(window);
  if (found == receivers_.end()) return;
  Receiver& receiver = found->second;
  const auto ping = receiver.pings.find(number);
  if (ping == receiver.pings.end()) return;
  const Use over = ping->second;
  receiver.first = std::max(receiver.first, over + 1);
  // Those sent before are answered before, or never.
  std::erase_if(receiver.pings, [over](const auto& other) { return other.second <= over; });
  if (receiver.first > receiver.last) receivers_.erase(found);
}

void PendingUses::ForgetPings() {
  for (auto& [window, receiver] : receivers_) receiver.pings.clear();
}

void PendingUses::Expire(Deadline now, const std::function<bool(xcb_window_t)>& is_at_rest) {
  std::erase_if(receivers_, [&](const auto& entry) {
    const auto& [window, receiver] = entry;
    return !receiver.answers_pings && receiver.last_at + kQuarantine <= now && is_at_rest(window);
  });
}

Use PendingUses::over() const {
  Use first = kEveryUse;
  for (const auto& [window, receiver] : receivers_) first = std::min(first, receiver.first);
  return first == kEveryUse ? kEveryUse : first - 1;
}

std::vector<xcb_window_t> PendingUses::Unpinged() const {
  std::vector<xcb_window_t> windows;
  for (const auto& [window, receiver] : receivers_) {
    const Use last = receiver.last;
    const bool is_covered = std::any_of(receiver.pings.begin(), receiver.pings.end(),
                                        [last](const auto& ping) { return ping.second >= last; });
    if (receiver.answers_pings && !is_covered) windows.push_back(window);
  }
  return windows;
}

std::vector<xcb_window_t> PendingUses::Windows() const {
  std::vector<xcb_window_t> windows;
  for (const auto& [window, receiver] : receivers_) windows.push_back(window);
  return windows;
}

std::optional<Deadline> PendingUses::NextExpiry() const {
  std::optional<Deadline> next;
  for (const auto& [window, receiver] : receivers_) {
    if (receiver.answers_pings) continue;
    const Deadline end = receiver.last_at + kQuarantine;
    if (!next || end < *next) next = end;
  }
  return next;
}

}  // namespace deskhand::platform
