#include "platform/x11/leftovers.h"

#include <algorithm>
#include <utility>

namespace deskhand::platform {
namespace {

// More are not told apart: the whole window counts as another's.
constexpr size_t kMostParts = 512;

void AddPart(const Leftovers::Part& part, std::vector<Leftovers::Part>* parts) {
  if (part.area.empty()) return;
  for (const Leftovers::Part& known : *parts) {
    if (known.source == part.source && Contains(known.area, part.area)) return;
  }
  parts->push_back(part);
}

}  // namespace

void Leftovers::Add(xcb_window_t window, const PixelRect& bounds) {
  Remove(window);  // an earlier window of the same number
  windows_[window] = {.bounds = bounds};
}

void Leftovers::Remove(xcb_window_t window) {
  if (windows_.erase(window) == 0) return;
  for (auto& [id, other] : windows_) {
    for (Part& part : other.parts) {
      if (part.source == window) part.source = XCB_NONE;
    }
  }
}

void Leftovers::AddUnknown(xcb_window_t window, const PixelRect& bounds) {
  Add(window, bounds);
  windows_[window].is_shown = true;
  Distrust(window);
}

void Leftovers::Distrust(xcb_window_t window) {
  const auto found = windows_.find(window);
  if (found == windows_.end() || !found->second.is_shown) return;
  const PixelRect& bounds = found->second.bounds;
  found->second.parts = {{{0, 0, bounds.width, bounds.height}, XCB_NONE}};
}

void Leftovers::DistrustNew() {
  for (const xcb_window_t window : std::exchange(new_, {})) Distrust(window);
}

void Leftovers::OnShown(xcb_window_t window) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  found->second.parts.clear();
  found->second.is_shown = true;
  Allocate(window, &found->second);
}

void Leftovers::OnAllShown(const std::vector<xcb_window_t>& windows) {
  for (const xcb_window_t window : windows) {
    const auto found = windows_.find(window);
    if (found != windows_.end()) found->second.is_shown = true;
  }
  // Put aside until all are known: what one has is not passed on to the next.
  std::map<xcb_window_t, std::vector<Part>> parts;
  for (auto& [id, window] : windows_) {
    if (!window.is_shown) continue;
    Allocate(id, &window);
    parts[id] = std::exchange(window.parts, {});
  }
  for (auto& [id, found] : parts) windows_[id].parts = std::move(found);
}

void Leftovers::OnHidden(xcb_window_t window) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  found->second.is_shown = false;
  found->second.parts.clear();
}

void Leftovers::OnConfigured(xcb_window_t window, const PixelRect& bounds) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  Window& configured = found->second;
  const bool is_resized =
      bounds.width != configured.bounds.width || bounds.height != configured.bounds.height;
  configured.bounds = bounds;
  if (!configured.is_shown || !is_resized) return;
  // The old contents are kept, and put wherever the window's bit gravity says.
  for (Part& part : configured.parts) part.area = {0, 0, bounds.width, bounds.height};
  Allocate(window, &configured);
}

void Leftovers::Allocate(xcb_window_t id, Window* window) {
  new_.insert(id);
  const auto add = [window](const PixelRect& area, xcb_window_t source) {
    const PixelRect shared = Intersect(area, window->bounds);
    AddPart({Shift(shared, -window->bounds.x, -window->bounds.y), source}, &window->parts);
  };
  for (const auto& [other_id, other] : windows_) {
    if (other_id == id || !other.is_shown) continue;
    if (Intersect(other.bounds, window->bounds).empty()) continue;
    add(other.bounds, other_id);
    // What others left in that one was on the screen, too.
    for (const Part& part : other.parts) {
      if (part.source == id) continue;
      const PixelRect area = Shift(part.area, other.bounds.x, other.bounds.y);
      if (!IsShownIn(area, part.source)) add(Intersect(area, other.bounds), part.source);
    }
  }
  if (window->parts.size() > kMostParts) Distrust(id);
}

bool Leftovers::IsShownIn(const PixelRect& area, xcb_window_t window) const {
  const auto found = windows_.find(window);
  return found != windows_.end() && found->second.is_shown && Contains(found->second.bounds, area);
}

std::vector<Leftovers::Part> Leftovers::In(xcb_window_t window) const {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return {};
  std::vector<Part> parts = found->second.parts;
  for (Part& part : parts) {
    part.area = Shift(part.area, found->second.bounds.x, found->second.bounds.y);
  }
  return parts;
}

void Leftovers::Forget(xcb_window_t window, xcb_window_t source) {
  const auto found = windows_.find(window);
  if (found == windows_.end()) return;
  std::erase_if(found->second.parts, [source](const Part& part) { return part.source == source; });
}

}  // namespace deskhand::platform
