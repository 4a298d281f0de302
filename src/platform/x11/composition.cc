#include "platform/x11/composition.h"

#include <utility>

#include <xcb/composite.h>

#include "platform/x11/error_trap.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

bool MayShow(xcb_window_t source, const WindowTree& tree,
             const std::vector<Exclusion>& exclusions) {
  for (size_t top = 0; top < tree.tops.size(); ++top) {
    if (tree.tops[top].id == source) return tree.tops[top].is_unclaimed || exclusions[top].any();
  }
  return true;  // of a window that has gone: nobody can say what it was
}

}  // namespace

std::unique_ptr<Composition> Composition::Start(const Session& session, const WindowTree& tree) {
  xcb_connection_t* const connection = session.connection();
  auto canvas_support = QueryCanvasSupport(session);
  const xcb_query_extension_reply_t* damage = xcb_get_extension_data(connection, &xcb_damage_id);
  if (!canvas_support || !damage || !damage->present) return nullptr;
  const auto version =
      Await(connection, xcb_damage_query_version_reply, xcb_damage_query_version(connection, 1, 1));
  if (!version) return nullptr;
  const ErrorTrap trap(session);
  const xcb_window_t root = session.screen().root;
  xcb_composite_redirect_subwindows(connection, root, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  if (!trap.Succeeded()) return nullptr;
  std::unique_ptr<Composition> composition(
      new Composition(session, std::move(*canvas_support), damage->first_event));
  Leftovers& leftovers = composition->leftovers_;
  std::vector<xcb_window_t> shown;
  for (const TopWindow& top : tree.tops) {
    leftovers.Add(top.id, top.bounds);
    if (top.is_shown) shown.push_back(top.id);
  }
  leftovers.OnAllShown(shown);
  leftovers.TrustNew();
  composition->was_composited_ = tree.is_composited;
  composition->unproven_.insert(shown.begin(), shown.end());
  return composition;
}

Composition::Composition(const Session& session, CanvasSupport canvas_support, uint8_t damage_event)
    : root_(session.screen().root),
      client_mask_(~xcb_get_setup(session.connection())->resource_id_mask),
      own_client_(xcb_get_setup(session.connection())->resource_id_base),
      canvas_support_(std::move(canvas_support)),
      repainting_(damage_event) {}

void Composition::Handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_CREATE_NOTIFY:
      Handle(reinterpret_cast<const xcb_create_notify_event_t&>(event));
      break;
    case XCB_DESTROY_NOTIFY:
      leftovers_.Remove(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
      break;
    case XCB_MAP_NOTIFY:
      leftovers_.OnShown(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
      break;
    case XCB_UNMAP_NOTIFY:
      leftovers_.OnHidden(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
      break;
    case XCB_CONFIGURE_NOTIFY:
      Handle(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
      break;
    case XCB_REPARENT_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
      // One that comes to the root window is met when the windows are listed.
      if (notify.parent != root_) leftovers_.Remove(notify.window);
      break;
    }
    default:
      repainting_.Handle(event);
  }
}

void Composition::Handle(const xcb_create_notify_event_t& event) {
  if (event.parent != root_ || (event.window & client_mask_) == own_client_) return;
  leftovers_.Add(event.window, {event.x, event.y, event.width + 2 * event.border_width,
                                event.height + 2 * event.border_width});
}

void Composition::Handle(const xcb_configure_notify_event_t& event) {
  leftovers_.OnConfigured(event.window, {event.x, event.y, event.width + 2 * event.border_width,
                                         event.height + 2 * event.border_width});
}

void Composition::Reconcile(const WindowTree& tree, const std::set<xcb_window_t>& distrusted) {
  for (const TopWindow& top : tree.tops) {
    if (leftovers_.Knows(top.id)) continue;
    if (top.is_shown) {
      leftovers_.AddUnknown(top.id, top.bounds);
    } else {
      leftovers_.Add(top.id, top.bounds);
    }
  }
  for (const xcb_window_t window : distrusted) leftovers_.Distrust(window);
  // What a compositing manager shows is not what there is, but what there was.
  if (tree.is_composited || was_composited_) {
    leftovers_.DistrustNew();
  } else {
    leftovers_.TrustNew();
  }
  was_composited_ = tree.is_composited;
}

std::vector<PixelRect> Composition::FindLeftovers(const WindowTree& tree,
                                                  const std::vector<Exclusion>& exclusions,
                                                  size_t top) {
  const TopWindow& window = tree.tops[top];
  std::vector<PixelRect> areas;
  for (const Leftovers::Part& part : leftovers_.In(window.id)) {
    if (!MayShow(part.source, tree, exclusions)) continue;
    const PixelRect inside = Intersect(part.area, window.bounds);
    if (!inside.empty()) areas.push_back(inside);
    leftovers_.Forget(window.id, part.source);
  }
  return areas;
}

bool Composition::Clean(const Session& session, const WindowTree& tree,
                        const std::vector<Exclusion>& exclusions, const PixelRect& area) {
  const ErrorTrap trap(session);  // takes the events that came before the grab, too
  Reconcile(tree, session.link().window_watch->TakeDistrusted());
  bool has_answered = true;
  for (size_t top = 0; top < tree.tops.size(); ++top) {
    const TopWindow& window = tree.tops[top];
    const bool matters =
        window.is_shown && !exclusions[top].is_whole && !Intersect(window.bounds, area).empty();
    if (!matters) continue;
    const std::vector<PixelRect> areas = FindLeftovers(tree, exclusions, top);
    const bool is_unproven = unproven_.erase(window.id) > 0;
    if (areas.empty() && !is_unproven) continue;
    has_answered &= repainting_.Blacken(session, window, areas, is_unproven);
  }
  const bool has_succeeded = trap.Succeeded();
  repainting_.Arm();
  return has_answered && has_succeeded;
}

}  // namespace deskhand::platform
