#include "platform/x11/repainting.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include <poll.h>
#include <xcb/composite.h>

#include "platform/x11/protocol_rect.h"
#include "platform/x11/reply.h"
#include "platform/x11/subtree_query.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// A program that paints in several steps pauses less than this between them.
constexpr std::chrono::milliseconds kQuietTime{10};

/// A window that is drawn.
struct DrawnWindow {
  xcb_window_t id;
  PixelRect inside;  // without its border
  bool has_painter;  // its program wants to know what it is to paint
};

/// A window and those inside of it.
class DrawnWindows {
 public:
  explicit DrawnWindows(const Session& session)
      : connection_(session.connection()), manager_(session.link().window_watch->manager()) {}

  /// False when the server did not answer.
  bool Collect(xcb_window_t top) {
    std::vector<Question> level{Ask(top, kNone, 0, 0)};
    while (!level.empty()) {
      std::vector<Question> next;
      for (const Question& question : level) Read(question, &next);
      level = std::move(next);
    }
    return is_complete_;
  }

  /// As they are drawn: each before those that lie on it.
  std::vector<DrawnWindow> InOrder() const {
    std::vector<DrawnWindow> ordered;
    std::vector<size_t> open;
    if (!nodes_.empty()) open.push_back(0);
    while (!open.empty()) {
      const Node& node = nodes_[open.back()];
      open.pop_back();
      ordered.push_back(node.window);
      open.insert(open.end(), node.children.rbegin(), node.children.rend());
    }
    return ordered;
  }

  /// The borders, which the server draws by itself, and never leaves undone.
  const std::vector<PixelRect>& borders() const { return borders_; }

 private:
  static constexpr size_t kNone = SIZE_MAX;

  struct Node {
    DrawnWindow window;
    std::vector<size_t> children = {};  // bottom to top
  };

  struct Question {
    xcb_window_t window;
    size_t parent;
    int32_t parent_x;
    int32_t parent_y;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_query_tree_cookie_t tree;
  };

  Question Ask(xcb_window_t window, size_t parent, int32_t parent_x, int32_t parent_y) const {
    return {window,
            parent,
            parent_x,
            parent_y,
            xcb_get_window_attributes(connection_, window),
            xcb_get_geometry(connection_, window),
            xcb_query_tree(connection_, window)};
  }

  void Read(const Question& question, std::vector<Question>* next) {
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
    const int32_t border = geometry->border_width;
    const PixelRect inside{question.parent_x + geometry->x + border,
                           question.parent_y + geometry->y + border, geometry->width,
                           geometry->height};
    // Window managers leave most of a frame to its background.
    const bool has_painter = (attributes->all_event_masks & XCB_EVENT_MASK_EXPOSURE) != 0 &&
                             ClientOf(connection_, question.window) != manager_;
    const size_t index = nodes_.size();
    nodes_.push_back({.window = {question.window, inside, has_painter}});
    if (question.parent != kNone) nodes_[question.parent].children.push_back(index);
    if (border > 0) {
      const PixelRect outside{inside.x - border, inside.y - border, inside.width + 2 * border,
                              inside.height + 2 * border};
      const auto ring = Subtract({outside}, inside);
      borders_.insert(borders_.end(), ring.begin(), ring.end());
    }
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int child = 0; child < xcb_query_tree_children_length(tree.get()); ++child) {
      next->push_back(Ask(children[child], index, inside.x, inside.y));
    }
  }

  xcb_connection_t* const connection_;
  const uint32_t manager_;
  std::vector<Node> nodes_;
  std::vector<PixelRect> borders_;
  bool is_complete_ = true;
};

/// Black, or transparent black, whatever the window's visual.
void FillContents(xcb_connection_t* connection, const TopWindow& window,
                  const std::vector<PixelRect>& areas) {
  const xcb_pixmap_t contents = xcb_generate_id(connection);
  const xcb_gcontext_t gc = xcb_generate_id(connection);
  const uint32_t black = 0;
  std::vector<xcb_rectangle_t> rectangles;
  rectangles.reserve(areas.size());
  for (const PixelRect& area : areas) {
    rectangles.push_back(ToRectangle(Shift(area, -window.bounds.x, -window.bounds.y)));
  }
  xcb_composite_name_window_pixmap(connection, window.id, contents);
  xcb_create_gc(connection, gc, contents, XCB_GC_FOREGROUND, &black);
  xcb_poly_fill_rectangle(connection, contents, gc, rectangles.size(), rectangles.data());
  xcb_free_gc(connection, gc);
  xcb_free_pixmap(connection, contents);
}

/// Has the server paint backgrounds and tell the programs. Returns what programs are to paint.
std::vector<PixelRect> Expose(xcb_connection_t* connection, const std::vector<DrawnWindow>& windows,
                              const std::vector<PixelRect>& areas) {
  std::vector<PixelRect> missing;
  for (const DrawnWindow& window : windows) {
    for (const PixelRect& area : areas) {
      const PixelRect inside = Intersect(area, window.inside);
      if (inside.empty()) continue;
      const xcb_rectangle_t rect = ToRectangle(Shift(inside, -window.inside.x, -window.inside.y));
      xcb_clear_area(connection, /*exposures=*/1, window.id, rect.x, rect.y, rect.width,
                     rect.height);
      missing = Subtract(missing, inside);
      if (window.has_painter) missing.push_back(inside);
    }
  }
  return missing;
}

bool WaitForEvents(const Session& session, Deadline until) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
  if (left <= 0 || xcb_connection_has_error(session.connection())) return false;
  pollfd socket{xcb_get_file_descriptor(session.connection()), POLLIN, 0};
  return poll(&socket, 1, static_cast<int>(left)) > 0;
}

}  // namespace

bool Repainting::Blacken(const Session& session, const TopWindow& window,
                         const std::vector<PixelRect>& areas, bool may_take_all) {
  xcb_connection_t* const connection = session.connection();
  DrawnWindows drawn(session);
  if (!drawn.Collect(window.id)) return false;
  const std::vector<DrawnWindow> windows = drawn.InOrder();
  const bool takes_all =
      may_take_all && std::any_of(windows.begin(), windows.end(),
                                  [](const DrawnWindow& each) { return each.has_painter; });
  std::vector<PixelRect> blackened;
  for (const PixelRect& area : takes_all ? std::vector<PixelRect>{window.bounds} : areas) {
    const PixelRect inside = Intersect(area, window.bounds);
    blackened = Subtract(blackened, inside);
    blackened.push_back(inside);
  }
  for (const PixelRect& border : drawn.borders()) blackened = Subtract(blackened, border);
  if (blackened.empty()) return true;
  FillContents(connection, window, blackened);
  std::vector<PixelRect> missing = Expose(connection, windows, blackened);
  if (missing.empty()) return true;
  const PixelRect origin = Shift(window.bounds, window.border_px, window.border_px);
  for (PixelRect& area : missing) area = Shift(area, -origin.x, -origin.y);
  const xcb_damage_damage_t damage = xcb_generate_id(connection);
  xcb_damage_create(connection, damage, window.id, XCB_DAMAGE_REPORT_LEVEL_DELTA_RECTANGLES);
  xcb_damage_subtract(connection, damage, XCB_NONE, XCB_NONE);
  watches_[damage] = {.missing = std::move(missing)};
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
