// The windows of the screen, kept from one look to the next.
// Only those that something happened to are asked again. Thread: the capture thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

#include "platform/x11/session.h"
#include "platform/x11/subtree_query.h"
#include "platform/x11/window_support.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// Selects events of every window that it meets, for as long as its connection lasts.
class WindowWatch {
 public:
  /// Null when the server does not answer.
  static std::unique_ptr<WindowWatch> Start(const Session& session);

  /// All windows, shown or not, to the bottom: an application's window may lie in a frame, or be
  /// embedded in that of another. Exact while the server is grabbed.
  WindowTree Query(const Session& session);

  /// Takes notice of an event of the connection.
  void Handle(const xcb_generic_event_t& event);

  const WindowSupport& support() const { return support_; }

  /// Whether Query() met windows that it did not know, or that something had happened to.
  bool has_news() const { return has_news_; }

  /// The connection of the window manager, as Query() found it; 0 when there is none.
  uint32_t manager() const { return manager_; }

  Deadline last_used() const { return last_used_; }

 private:
  /// None until the server has been asked, and after something happened to the window.
  using Entries = std::map<xcb_window_t, std::optional<Subtree>>;

  WindowWatch(const Session& session, const WindowSupport& support);

  void Forget(xcb_window_t node);
  void OnConfigured(const xcb_configure_notify_event_t& event);
  bool Matters(xcb_atom_t property) const;
  bool Renew(const Session& session);

  const xcb_window_t root_;
  const WindowSupport support_;
  Entries entries_;                                        // of each top-level window
  std::unordered_map<xcb_window_t, xcb_window_t> top_of_;  // of every window
  uint32_t manager_ = 0;
  bool has_news_ = false;
  Deadline last_used_;
};

}  // namespace deskhand::platform
