#include "platform/x11/subtree_query.h"

#include <algorithm>
#include <string>
#include <utility>

#include <unistd.h>
#include <xcb/res.h>

#include "platform/x11/property.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_roles.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kWatchedEvents =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

/// What is asked of every window, to find those that matter.
struct Visit {
  xcb_window_t window;
  Subtree* subtree;
  bool has_foreign_parent;
  bool asks_name;
  xcb_query_tree_cookie_t tree;
  xcb_get_property_cookie_t wm_class = {};
  xcb_get_property_cookie_t gtk_application_id = {};
};

/// What is asked of a window that matters.
struct Inquiry {
  xcb_get_window_attributes_cookie_t attributes;
  xcb_get_geometry_cookie_t geometry;
  xcb_translate_coordinates_cookie_t origin;
  xcb_get_property_cookie_t process_id;
  xcb_get_property_cookie_t machine;
  xcb_get_property_cookie_t transient_for;
  xcb_get_property_cookie_t wm_state;
  xcb_get_property_cookie_t opacity;
  RoleCookies role;
};

std::string HostName() {
  char name[256] = {};
  return gethostname(name, sizeof(name) - 1) == 0 ? name : std::string();
}

/// Instance and class, each ended by a NUL, see the ICCCM, section 4.1.2.5.
void ReadClass(const std::string& text, WindowFacts* facts) {
  const size_t end = text.find('\0');
  facts->wm_instance = text.substr(0, end);
  if (end == std::string::npos) return;
  const std::string rest = text.substr(end + 1);
  facts->wm_class = rest.substr(0, rest.find('\0'));
}

PixelRect OuterBounds(int32_t inner_x, int32_t inner_y, const xcb_get_geometry_reply_t& geometry) {
  const int32_t border = geometry.border_width;
  return {inner_x - border, inner_y - border, geometry.width + 2 * border,
          geometry.height + 2 * border};
}

class SubtreeQuery {
 public:
  SubtreeQuery(const Session& session, const WindowSupport& support, Detail detail,
               uint32_t manager)
      : connection_(session.connection()),
        root_(session.screen().root),
        support_(support),
        detail_(detail),
        manager_(manager) {}

  std::vector<Subtree> Run(const std::vector<xcb_window_t>& tops) {
    std::vector<Subtree> subtrees;
    subtrees.reserve(tops.size());
    for (const xcb_window_t top : tops) subtrees.push_back({.window = {.id = top}});
    std::vector<Visit> level;
    level.reserve(subtrees.size());
    for (Subtree& subtree : subtrees) level.push_back(Ask(subtree.window.id, &subtree, true));
    while (!level.empty()) {
      std::vector<Visit> next;
      for (const Visit& visit : level) Read(visit, &next);
      level = std::move(next);
    }
    AskApplications(&subtrees);
    AskServerForProcesses(&subtrees);
    return subtrees;
  }

 private:
  xcb_get_property_cookie_t GetProperty(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                        uint32_t length) const {
    return xcb_get_property(connection_, false, window, name, type, 0, length);
  }

  /// Passes a reply on; a missing one is remembered.
  template <class T>
  static Reply<T> Take(Subtree* subtree, Reply<T> reply) {
    subtree->is_complete &= reply != nullptr;
    return reply;
  }

  Visit Ask(xcb_window_t window, Subtree* subtree, bool has_foreign_parent) const {
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &kWatchedEvents);
    Visit visit{.window = window,
                .subtree = subtree,
                .has_foreign_parent = has_foreign_parent,
                // What a window manager draws around its clients has no name, and is most of what
                // there is. Its own top-level windows are asked.
                .asks_name = has_foreign_parent || ClientOf(connection_, window) != manager_,
                .tree = xcb_query_tree(connection_, window)};
    if (visit.asks_name) {
      visit.wm_class = GetProperty(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kLongestTextWords);
      visit.gtk_application_id =
          GetProperty(window, support_.atoms.gtk_application_id, XCB_ATOM_ANY, kLongestTextWords);
    }
    return visit;
  }

  /// All replies are taken, used or not: XCB keeps those that nobody takes.
  void Read(const Visit& visit, std::vector<Visit>* next) const {
    Subtree* const subtree = visit.subtree;
    const uint32_t client = ClientOf(connection_, visit.window);
    const auto tree = Take(subtree, Await(connection_, xcb_query_tree_reply, visit.tree));
    ApplicationWindow window{.id = visit.window, .client = client};
    if (visit.asks_name) {
      const auto wm_class =
          Take(subtree, Await(connection_, xcb_get_property_reply, visit.wm_class));
      const auto gtk_id =
          Take(subtree, Await(connection_, xcb_get_property_reply, visit.gtk_application_id));
      if (wm_class) ReadClass(ReadText(*wm_class), &window.facts);
      if (gtk_id) window.facts.gtk_application_id = ReadText(*gtk_id);
    }
    if (visit.has_foreign_parent || window.has_name()) {
      subtree->applications.push_back(std::move(window));
    }
    subtree->nodes.push_back(visit.window);
    if (!tree) return;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
      const bool is_foreign = ClientOf(connection_, children[index]) != client;
      next->push_back(Ask(children[index], subtree, is_foreign));
    }
  }

  Inquiry Inquire(xcb_window_t window) const {
    const WindowAtoms& atoms = support_.atoms;
    return {
        .attributes = xcb_get_window_attributes(connection_, window),
        .geometry = xcb_get_geometry(connection_, window),
        .origin = xcb_translate_coordinates(connection_, window, root_, 0, 0),
        .process_id = GetProperty(window, atoms.net_wm_pid, XCB_ATOM_CARDINAL, 1),
        .machine = GetProperty(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_ANY, kLongestTextWords),
        .transient_for = GetProperty(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 1),
        .wm_state = GetProperty(window, atoms.wm_state, XCB_ATOM_ANY, 1),
        .opacity = GetProperty(window, atoms.net_wm_window_opacity, XCB_ATOM_CARDINAL, 1),
        .role = detail_ == Detail::kRoles ? AskRole(connection_, atoms, window) : RoleCookies(),
    };
  }

  void Read(const Inquiry& inquiry, ApplicationWindow* window, Subtree* subtree) const {
    const auto property = [&](xcb_get_property_cookie_t cookie) {
      return Take(subtree, Await(connection_, xcb_get_property_reply, cookie));
    };
    const auto attributes =
        Take(subtree, Await(connection_, xcb_get_window_attributes_reply, inquiry.attributes));
    const auto geometry =
        Take(subtree, Await(connection_, xcb_get_geometry_reply, inquiry.geometry));
    const auto origin =
        Take(subtree, Await(connection_, xcb_translate_coordinates_reply, inquiry.origin));
    const auto process = property(inquiry.process_id);
    const auto machine = property(inquiry.machine);
    const auto leader = property(inquiry.transient_for);
    const auto wm_state = property(inquiry.wm_state);
    const auto opacity = property(inquiry.opacity);
    if (detail_ == Detail::kRoles) {
      const auto role = ReadRole(connection_, support_.atoms, inquiry.role);
      subtree->is_complete &= role.has_value();
      if (role) window->role = *role;
      if (wm_state) window->role.state = StateOf(ReadCard32(*wm_state));
      window->role.is_override_redirect = attributes && attributes->override_redirect;
    }
    if (leader) window->transient_for = ReadCard32(*leader).value_or(XCB_NONE);
    window->is_managed = wm_state && wm_state->type != XCB_ATOM_NONE;
    window->is_viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    if (machine) {
      const std::string name = ReadText(*machine);
      window->is_local = name.empty() || name == host_name_;
    }
    // A number of another machine would mean some other process here.
    if (process && window->is_local) {
      window->facts.process_id = ReadCard32(*process).value_or(0);
    }
    TopWindow& top = subtree->window;
    if (opacity) top.opacity = std::min(top.opacity, ReadCard32(*opacity).value_or(UINT32_MAX));
    if (!attributes || !geometry || !origin) return;
    window->bounds = OuterBounds(origin->dst_x, origin->dst_y, *geometry);
    if (window->id != top.id) return;
    top.bounds = window->bounds;
    top.border_px = geometry->border_width;
    top.depth = geometry->depth;
    top.visual = attributes->visual;
    top.is_drawable = attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    top.is_shown = top.is_drawable && window->is_viewable;
  }

  void AskApplications(std::vector<Subtree>* subtrees) const {
    std::vector<Inquiry> inquiries;
    for (const Subtree& subtree : *subtrees) {
      for (const ApplicationWindow& window : subtree.applications) {
        inquiries.push_back(Inquire(window.id));
      }
    }
    auto inquiry = inquiries.begin();
    for (Subtree& subtree : *subtrees) {
      for (ApplicationWindow& window : subtree.applications) Read(*inquiry++, &window, &subtree);
    }
  }

  /// The server knows the processes of local connections, whatever their windows say.
  void AskServerForProcesses(std::vector<Subtree>* subtrees) const {
    if (!support_.has_client_ids) return;
    std::vector<xcb_res_client_id_spec_t> wanted;
    const auto for_unknown = [subtrees](const auto& visit) {
      for (Subtree& subtree : *subtrees) {
        for (ApplicationWindow& window : subtree.applications) {
          if (window.facts.process_id == 0 && window.is_local) visit(&window, &subtree);
        }
      }
    };
    for_unknown([&wanted](const ApplicationWindow* window, const Subtree*) {
      if (wanted.empty() || wanted.back().client != window->client) {
        wanted.push_back({window->client, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
      }
    });
    if (wanted.empty()) return;
    const auto reply = Await(connection_, xcb_res_query_client_ids_reply,
                             xcb_res_query_client_ids(connection_, wanted.size(), wanted.data()));
    for_unknown([&](ApplicationWindow* window, Subtree* subtree) {
      subtree->is_complete &= reply != nullptr;
      if (reply) window->facts.process_id = FindProcess(*reply, window->client);
    });
  }

  uint32_t FindProcess(const xcb_res_query_client_ids_reply_t& reply, uint32_t client) const {
    auto ids = xcb_res_query_client_ids_ids_iterator(&reply);
    for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
      if (ClientOf(connection_, ids.data->spec.client) == client &&
          xcb_res_client_id_value_value_length(ids.data) > 0) {
        return *xcb_res_client_id_value_value(ids.data);
      }
    }
    return 0;
  }

  xcb_connection_t* const connection_;
  const xcb_window_t root_;
  const WindowSupport& support_;
  const Detail detail_;
  const uint32_t manager_;
  const std::string host_name_ = HostName();
};

}  // namespace

std::vector<Subtree> QuerySubtrees(const Session& session, const WindowSupport& support,
                                   Detail detail, uint32_t manager,
                                   const std::vector<xcb_window_t>& tops) {
  return SubtreeQuery(session, support, detail, manager).Run(tops);
}

uint32_t ClientOf(xcb_connection_t* connection, xcb_window_t window) {
  return window & ~xcb_get_setup(connection)->resource_id_mask;
}

}  // namespace deskhand::platform
