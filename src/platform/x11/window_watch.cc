#include "platform/x11/window_watch.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "platform/x11/property.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_roles.h"

namespace deskhand::platform {
namespace {

// Of one connection; a program that names ever new ones must not fill the memory.
constexpr size_t kMostNames = 64;

/// Whether a window does not show any more in the one that is told of it.
bool HasLeft(const xcb_generic_event_t& event) {
  const uint8_t type = event.response_type & 0x7f;
  if (type == XCB_DESTROY_NOTIFY || type == XCB_UNMAP_NOTIFY) return true;
  const auto& notify = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
  return type == XCB_REPARENT_NOTIFY && notify.parent != notify.event;
}

}  // namespace

std::unique_ptr<WindowWatch> WindowWatch::Start(const Session& session, Detail detail) {
  xcb_connection_t* const connection = session.connection();
  const auto support = QueryWindowSupport(connection, session.link().screen_number);
  if (!support) return nullptr;
  const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection, session.screen().root, XCB_CW_EVENT_MASK, &events);
  return std::unique_ptr<WindowWatch>(new WindowWatch(session, *support, detail));
}

WindowWatch::WindowWatch(const Session& session, const WindowSupport& support, Detail detail)
    : connection_(session.connection()),
      root_(session.screen().root),
      support_(support),
      detail_(detail),
      last_used_(Clock::now()) {}

std::shared_ptr<const WindowTree> WindowWatch::Query(const Session& session) {
  last_used_ = Clock::now();
  const auto tree_cookie = xcb_query_tree(connection_, root_);
  const auto check_cookie = xcb_get_property(
      connection_, false, root_, support_.atoms.net_supporting_wm_check, XCB_ATOM_WINDOW, 0, 1);
  const auto compositor_cookie = xcb_get_selection_owner(connection_, support_.atoms.compositor);
  const auto root = Await(connection_, xcb_query_tree_reply, tree_cookie);
  const auto check = Await(connection_, xcb_get_property_reply, check_cookie);
  const auto compositor = Await(connection_, xcb_get_selection_owner_reply, compositor_cookie);
  if (!root || !check || !compositor) {
    auto nothing = std::make_shared<WindowTree>();
    nothing->is_complete = false;
    return nothing;
  }
  TakeEvents(session.link());  // what happened before these answers
  const bool is_composited = compositor->owner != XCB_NONE;
  const uint32_t manager = ClientOf(connection_, ReadCard32(*check).value_or(XCB_NONE));
  const std::span<const xcb_window_t> tops(xcb_query_tree_children(root.get()),
                                           xcb_query_tree_children_length(root.get()));
  has_news_ = false;
  if (IsStillSo(tops, is_composited, manager)) return tree_;
  tree_.reset();
  for (auto entry = entries_.begin(); entry != entries_.end();) {
    const bool is_gone = std::find(tops.begin(), tops.end(), entry->first) == tops.end();
    if (!is_gone) {
      ++entry;
      continue;
    }
    ForgetNodes(entry->first, entry->second);
    distrusted_.erase(entry->first);
    entry = entries_.erase(entry);
  }
  for (const xcb_window_t top : tops) entries_.try_emplace(top);
  manager_ = manager;
  has_changed_ = false;
  auto tree = std::make_shared<WindowTree>();
  tree->is_composited = is_composited;
  tree->is_complete = Renew(session);
  for (const xcb_window_t top : tops) {
    if (entries_.at(top).subtree) AppendTop(entries_.at(top), tree.get());
  }
  // Those of connections that have no window any more are forgotten; now that would be a guess.
  if (!tree->is_complete) return tree;
  RememberNames(tree.get());
  tree_ = tree;
  return tree;
}

bool WindowWatch::IsStillSo(std::span<const xcb_window_t> tops, bool is_composited,
                            uint32_t manager) const {
  return tree_ && !has_changed_ && is_composited == tree_->is_composited && manager == manager_ &&
         std::ranges::equal(tops, tree_->tops, {}, {}, &TopWindow::id);
}

bool WindowWatch::Renew(const Session& session) {
  std::vector<xcb_window_t> wanted;
  for (const auto& [top, entry] : entries_) {
    if (!entry.subtree) wanted.push_back(top);
  }
  has_news_ = !wanted.empty();
  bool is_complete = true;
  for (Subtree& subtree : QuerySubtrees(session, support_, detail_, manager_, wanted)) {
    is_complete &= subtree.is_complete;
    if (subtree.is_complete) Accept(std::move(subtree));
  }
  return is_complete;
}

void WindowWatch::Accept(Subtree subtree) {
  Entry& entry = entries_[subtree.window.id];
  const uint32_t owner = subtree.applications.front().client;
  std::vector<xcb_window_t> guests;
  std::vector<ApplicationWindow> clients;
  for (const ApplicationWindow& window : subtree.applications) {
    if (window.client == owner || !window.is_viewable) continue;
    guests.push_back(window.id);
    if (window.is_managed) clients.push_back(window);
  }
  entry.has_lost_guest |=
      std::any_of(entry.guests.begin(), entry.guests.end(), [&guests](xcb_window_t guest) {
        return std::find(guests.begin(), guests.end(), guest) == guests.end();
      });
  if (!clients.empty()) entry.clients = std::move(clients);
  subtree.window.is_unclaimed = owner == manager_ && entry.clients.empty();
  // Something happened to it: a client that nobody has met may have come and gone.
  if (entry.has_lost_guest || subtree.window.is_unclaimed) {
    distrusted_.insert(subtree.window.id);
  }
  entry.has_lost_guest = false;
  entry.guests = std::move(guests);
  ForgetNodes(subtree.window.id, entry);
  entry.nodes = std::move(subtree.nodes);
  for (const xcb_window_t node : entry.nodes) top_of_[node] = subtree.window.id;
  entry.subtree = std::move(subtree);
}

void WindowWatch::AppendTop(const Entry& entry, WindowTree* tree) const {
  const auto append = [tree](ApplicationWindow window) {
    window.top = tree->tops.size();
    tree->applications.push_back(std::move(window));
  };
  for (const ApplicationWindow& window : entry.subtree->applications) append(window);
  // A frame is that of its client for as long as it is there: it may still show it.
  for (ApplicationWindow client : entry.clients) {
    const bool is_there =
        std::find(entry.guests.begin(), entry.guests.end(), client.id) != entry.guests.end();
    if (is_there) continue;
    client.is_viewable = false;
    append(std::move(client));
  }
  tree->tops.push_back(entry.subtree->window);
}

void WindowWatch::RememberNames(WindowTree* tree) {
  std::map<uint32_t, std::vector<WindowFacts>> present;
  for (const ApplicationWindow& window : tree->applications) {
    std::vector<WindowFacts>& facts = present[window.client];
    const bool is_known = std::find(facts.begin(), facts.end(), window.facts) != facts.end();
    if (window.has_name() && !is_known) facts.push_back(window.facts);
  }
  // Those of connections without any window are forgotten.
  std::erase_if(names_, [&](const auto& names) { return !present.contains(names.first); });
  for (const auto& [client, facts] : present) {
    std::vector<WindowFacts>& names = names_[client];
    for (const WindowFacts& former : names) {
      const bool is_present = std::find(facts.begin(), facts.end(), former) != facts.end();
      if (!is_present) tree->former_names.push_back({client, former});
    }
    for (const WindowFacts& now : facts) {
      const bool is_known = std::find(names.begin(), names.end(), now) != names.end();
      if (!is_known && names.size() < kMostNames) names.push_back(now);
    }
  }
}

WindowWatch::Entry* WindowWatch::EntryOf(xcb_window_t node) {
  const auto top = top_of_.find(node);
  const auto entry = entries_.find(top == top_of_.end() ? node : top->second);
  return entry == entries_.end() ? nullptr : &entry->second;
}

void WindowWatch::Forget(xcb_window_t node) {
  Entry* const entry = EntryOf(node);
  if (!entry || !entry->subtree) return;
  has_changed_ = true;
  entry->subtree.reset();
}

void WindowWatch::ForgetNodes(xcb_window_t top, const Entry& entry) {
  for (const xcb_window_t node : entry.nodes) {
    const auto known = top_of_.find(node);
    if (known != top_of_.end() && known->second == top) top_of_.erase(known);
  }
}

/// It may have come after the server was last asked, and nobody has met it.
void WindowWatch::OnLeft(xcb_window_t parent, xcb_window_t window) {
  Entry* const entry = EntryOf(parent);
  if (entry && ClientOf(connection_, window) != ClientOf(connection_, parent)) {
    entry->has_lost_guest = true;
  }
}

void WindowWatch::OnConfigured(const xcb_configure_notify_event_t& event) {
  const auto entry = entries_.find(event.window);
  if (entry == entries_.end() || !entry->second.subtree) return;
  TopWindow& top = entry->second.subtree->window;
  const PixelRect bounds{event.x, event.y, event.width + 2 * event.border_width,
                         event.height + 2 * event.border_width};
  if (bounds.width != top.bounds.width || bounds.height != top.bounds.height ||
      event.border_width != top.border_px) {
    Forget(event.window);
    return;
  }
  has_changed_ = true;
  for (ApplicationWindow& window : entry->second.subtree->applications) {
    window.bounds.x += bounds.x - top.bounds.x;
    window.bounds.y += bounds.y - top.bounds.y;
  }
  top.bounds = bounds;
}

xcb_window_t WindowWatch::TopOf(xcb_window_t window) const {
  const auto top = top_of_.find(window);
  return top == top_of_.end() ? xcb_window_t{XCB_NONE} : top->second;
}

bool WindowWatch::Matters(xcb_atom_t property) const {
  const WindowAtoms& atoms = support_.atoms;
  const auto all = {xcb_atom_t{XCB_ATOM_WM_CLASS},
                    xcb_atom_t{XCB_ATOM_WM_CLIENT_MACHINE},
                    xcb_atom_t{XCB_ATOM_WM_TRANSIENT_FOR},
                    atoms.gtk_application_id,
                    atoms.net_wm_pid,
                    atoms.net_wm_window_opacity,
                    atoms.wm_state};
  if (std::find(all.begin(), all.end(), property) != all.end()) return true;
  return detail_ == Detail::kRoles && IsOfRole(atoms, property);
}

void WindowWatch::Handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      last_time_ = notify.time;
      if (Matters(notify.atom)) Forget(notify.window);
      break;
    }
    case XCB_CONFIGURE_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
      if (notify.event == root_) {
        OnConfigured(notify);
      } else {
        Forget(notify.event);
      }
      break;
    }
    case XCB_CREATE_NOTIFY:
    case XCB_DESTROY_NOTIFY:
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_GRAVITY_NOTIFY: {
      // In all of these the parent comes first, and the window that something happened to next.
      const auto& notify = reinterpret_cast<const xcb_map_notify_event_t&>(event);
      if (HasLeft(event)) OnLeft(notify.event, notify.window);
      Forget(notify.event == root_ ? notify.window : notify.event);
      break;
    }
    default:
      break;
  }
}

}  // namespace deskhand::platform
