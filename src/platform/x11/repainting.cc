#include "platform/x11/repainting.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>

#include <poll.h>
#include <xcb/composite.h>

#include "platform/x11/reply.h"
#include "platform/x11/subtree_query.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// A program that paints in several steps pauses less than this between them.
constexpr std::chrono::milliseconds kQuietTime{10};

xcb_rectangle_t ToRectangle(const PixelRect& rect) {
  return {static_cast<int16_t>(rect.x), static_cast<int16_t>(rect.y),
          static_cast<uint16_t>(rect.width), static_cast<uint16_t>(rect.height)};
}

/// Black, or transparent black, whatever the window's visual.
void FillContents(xcb_connection_t* connection, const TopWindow& window,
                  const std::vector<PixelRect>& areas) {
  const xcb_pixmap_t contents = xcb_generate_id(connection);
  const xcb_gcontext_t gc = xcb_generate_id(connection);
  const uint32_t black = 0;
  std::vector<xcb_rectangle_t> rectangles;
  for (const PixelRect& area : areas) {
    const PixelRect inside = Intersect(area, window.bounds);
    rectangles.push_back(ToRectangle(Shift(inside, -window.bounds.x, -window.bounds.y)));
  }
  xcb_composite_name_window_pixmap(connection, window.id, contents);
  xcb_create_gc(connection, gc, contents, XCB_GC_FOREGROUND, &black);
  xcb_poly_fill_rectangle(connection, contents, gc, rectangles.size(), rectangles.data());
  xcb_free_gc(connection, gc);
  xcb_free_pixmap(connection, contents);
}

/// A window and those inside of it, level by level.
class ExposeWalk {
 public:
  ExposeWalk(const Session& session, const std::vector<PixelRect>& areas)
      : connection_(session.connection()),
        manager_(session.link().window_watch->manager()),
        areas_(areas) {}

  /// Has the server paint backgrounds and tell the programs. Returns what programs are to paint;
  /// none when the server did not answer.
  std::optional<std::vector<PixelRect>> Run(xcb_window_t top) {
    std::vector<Question> level{Ask(top, 0, 0)};
    while (!level.empty()) {
      std::vector<Question> next;
      for (const Question& question : level) Expose(question, &next);
      level = std::move(next);
    }
    if (!is_complete_) return std::nullopt;
    return std::move(missing_);
  }

 private:
  struct Question {
    xcb_window_t window;
    int32_t parent_x;
    int32_t parent_y;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_query_tree_cookie_t tree;
  };

  Question Ask(xcb_window_t window, int32_t parent_x, int32_t parent_y) const {
    return {window,
            parent_x,
            parent_y,
            xcb_get_window_attributes(connection_, window),
            xcb_get_geometry(connection_, window),
            xcb_query_tree(connection_, window)};
  }

  void Expose(const Question& question, std::vector<Question>* next) {
    const auto attributes =
        Await(connection_, xcb_get_window_attributes_reply, question.attributes);
    const auto geometry = Await(connection_, xcb_get_geometry_reply, question.geometry);
    const auto tree = Await(connection_, xcb_query_tree_reply, question.tree);
    if (!attributes || !geometry || !tree) {
      is_complete_ = false;
      return;
    }
    if (attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
      return;
    }
    const int32_t x = question.parent_x + geometry->x + geometry->border_width;
    const int32_t y = question.parent_y + geometry->y + geometry->border_width;
    // Window managers leave most of a frame to its background.
    const bool has_painter = (attributes->all_event_masks & XCB_EVENT_MASK_EXPOSURE) != 0 &&
                             ClientOf(connection_, question.window) != manager_;
    for (const PixelRect& area : areas_) {
      const PixelRect inside = Intersect(area, {x, y, geometry->width, geometry->height});
      if (inside.empty()) continue;
      missing_ = Subtract(missing_, inside);
      if (has_painter) missing_.push_back(inside);
      const xcb_rectangle_t rect = ToRectangle(Shift(inside, -x, -y));
      xcb_clear_area(connection_, /*exposures=*/true, question.window, rect.x, rect.y, rect.width,
                     rect.height);
    }
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
      next->push_back(Ask(children[index], x, y));
    }
  }

  xcb_connection_t* const connection_;
  const uint32_t manager_;
  const std::vector<PixelRect>& areas_;
  std::vector<PixelRect> missing_;
  bool is_complete_ = true;
};

bool WaitForEvents(const Session& session, Deadline until) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
  if (left <= 0 || xcb_connection_has_error(session.connection())) return false;
  pollfd socket{xcb_get_file_descriptor(session.connection()), POLLIN, 0};
  return poll(&socket, 1, static_cast<int>(left)) > 0;
}

}  // namespace

bool Repainting::Blacken(const Session& session, const TopWindow& window,
                         const std::vector<PixelRect>& areas) {
  xcb_connection_t* const connection = session.connection();
  FillContents(connection, window, areas);
  auto missing = ExposeWalk(session, areas).Run(window.id);
  if (!missing) return false;
  if (missing->empty()) return true;
  const PixelRect origin = Shift(window.bounds, window.border_px, window.border_px);
  for (PixelRect& area : *missing) area = Shift(area, -origin.x, -origin.y);
  const xcb_damage_damage_t damage = xcb_generate_id(connection);
  xcb_damage_create(connection, damage, window.id, XCB_DAMAGE_REPORT_LEVEL_DELTA_RECTANGLES);
  xcb_damage_subtract(connection, damage, XCB_NONE, XCB_NONE);
  watches_[damage] = {.missing = std::move(*missing)};
  return true;
}

void Repainting::Handle(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7f) != damage_event_ || !is_armed_) return;
  const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
  const auto watch = watches_.find(notify.damage);
  if (watch == watches_.end()) return;
  has_painted_ = true;
  watch->second.missing = Subtract(
      watch->second.missing, {notify.area.x, notify.area.y, notify.area.width, notify.area.height});
}

void Repainting::Await(const Session& session, Clock::duration longest) {
  const Deadline deadline = Clock::now() + longest;
  Deadline until = deadline;
  xcb_flush(session.connection());
  for (;;) {
    has_painted_ = false;
    TakeEvents(session.link());
    const bool is_done = std::all_of(watches_.begin(), watches_.end(), [](const auto& watch) {
      return watch.second.missing.empty();
    });
    if (!is_done) {
      until = deadline;
    } else if (has_painted_ || until == deadline) {
      until = std::min(deadline, Clock::now() + kQuietTime);
    }
    if (!WaitForEvents(session, until)) break;
  }
  for (const auto& [damage, watch] : watches_) xcb_damage_destroy(session.connection(), damage);
  watches_.clear();
  is_armed_ = false;
}

}  // namespace deskhand::platform
