// The windows of the screen, kept from one look to the next.
// Only those that something happened to are asked again. Thread: the session's.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
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
  static std::unique_ptr<WindowWatch> Start(const Session& session, Detail detail);

  /// All windows, shown or not, to the bottom: an application's window may lie in a frame, or be
  /// embedded in that of another. Exact while the server is grabbed; else a window may go before it
  /// is asked about, and the tree is without it and not complete. The same tree as last time when
  /// nothing has changed since; never null.
  std::shared_ptr<const WindowTree> Query(const Session& session);

  /// Takes notice of an event of the connection.
  void Handle(const xcb_generic_event_t& event);

  const WindowSupport& support() const { return support_; }

  /// Whether Query() met windows that it did not know, or that something had happened to.
  bool has_news() const { return has_news_; }

  /// The top-level windows that may show what was in a window which has left them, such as frames
  /// that outlive their clients; each is returned once.
  std::set<xcb_window_t> TakeDistrusted() { return std::exchange(distrusted_, {}); }

  /// The top-level window that a window lies in, or is; XCB_NONE when Query() did not meet it.
  xcb_window_t TopOf(xcb_window_t window) const;

  /// The server's time when a property last changed that is watched; 0 before.
  xcb_timestamp_t last_time() const { return last_time_; }

  /// The connection of the window manager, as Query() found it; 0 when there is none.
  uint32_t manager() const { return manager_; }

  Deadline last_used() const { return last_used_; }

 private:
  struct Entry {
    // None until the server has been asked, and after something happened to the window.
    std::optional<Subtree> subtree;
    // It and all in it when the server was last asked, and what of that was made by others.
    std::vector<xcb_window_t> nodes;
    std::vector<xcb_window_t> guests;
    bool has_lost_guest = false;  // since then
    // The clients of a window manager that it held last.
    std::vector<ApplicationWindow> clients;
  };

  WindowWatch(const Session& session, const WindowSupport& support, Detail detail);

  Entry* EntryOf(xcb_window_t node);
  void Forget(xcb_window_t node);
  void ForgetNodes(xcb_window_t top, const Entry& entry);
  void OnLeft(xcb_window_t parent, xcb_window_t window);
  void OnConfigured(const xcb_configure_notify_event_t& event);
  bool Matters(xcb_atom_t property) const;
  bool Renew(const Session& session);
  bool IsStillSo(std::span<const xcb_window_t> tops, bool is_composited, uint32_t manager) const;
  void Accept(Subtree subtree);
  void AppendTop(const Entry& entry, WindowTree* tree) const;
  void RememberNames(WindowTree* tree);

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const WindowSupport support_;
  const Detail detail_;
  std::map<xcb_window_t, Entry> entries_;                  // of each top-level window
  std::unordered_map<xcb_window_t, xcb_window_t> top_of_;  // of every window
  uint32_t manager_ = 0;
  xcb_timestamp_t last_time_ = 0;
  bool has_news_ = false;
  bool has_changed_ = false;                // since the tree was made
  std::shared_ptr<const WindowTree> tree_;  // the last one that was complete
  std::set<xcb_window_t> distrusted_;
  std::map<uint32_t, std::vector<WindowFacts>> names_;  // of each connection
  Deadline last_used_;
};

}  // namespace deskhand::platform
