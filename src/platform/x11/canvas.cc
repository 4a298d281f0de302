#include "platform/x11/canvas.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include "platform/x11/error_trap.h"
#include "platform/x11/property.h"
#include "platform/x11/protocol_rect.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// Copying the screen first does not pay when more than this part of it is drawn anew.
constexpr double kMostPatched = 0.4;

// So much fits into the processor's cache, at any usual width.
constexpr int32_t kStripHeight = 64;

/// The places that windows left out cover, as far as they lie in `area`; none overlaps another.
std::vector<PixelRect> CoveredPlaces(const WindowTree& tree,
                                     const std::vector<Exclusion>& exclusions,
                                     const PixelRect& area) {
  std::vector<PixelRect> places;
  const auto add = [&](const PixelRect& bounds) {
    const PixelRect place = Intersect(bounds, area);
    if (place.empty()) return;
    places = Subtract(places, place);
    places.push_back(place);
  };
  for (size_t top = 0; top < tree.tops.size(); ++top) {
    if (!tree.tops[top].is_shown) continue;
    if (exclusions[top].is_whole) add(tree.tops[top].bounds);
    for (const PixelRect& part : exclusions[top].parts) add(part);
  }
  return places;
}

/// One picture in the making: a pixmap of the size of `area`, at whose corner its origin is.
class Canvas {
 public:
  Canvas(const Session& session, const CanvasSupport& support, const PixelRect& area,
         const PixelFormat& format)
      : session_(session),
        connection_(session.connection()),
        screen_(session.screen()),
        support_(support),
        area_(area),
        format_(format) {
    CreatePixmap();
    const uint32_t copying[] = {XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, /*graphics_exposures=*/0};
    xcb_create_gc(connection_, gc_, pixmap_, XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES,
                  copying);
    xcb_create_gc(connection_, black_gc_, pixmap_, XCB_GC_FOREGROUND, &screen_.black_pixel);
    xcb_render_create_picture(connection_, picture_, pixmap_,
                              support_.formats.find(screen_.root_visual)->second.id, 0, nullptr);
    xcb_xfixes_create_region(connection_, region_, 0, nullptr);
    xcb_xfixes_create_region(connection_, clip_, 0, nullptr);
  }

  ~Canvas() {
    xcb_xfixes_destroy_region(connection_, clip_);
    xcb_xfixes_destroy_region(connection_, region_);
    xcb_render_free_picture(connection_, picture_);
    xcb_free_gc(connection_, black_gc_);
    xcb_free_gc(connection_, gc_);
    xcb_free_pixmap(connection_, pixmap_);
  }

  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  void CopyScreen() {
    xcb_copy_area(connection_, screen_.root, pixmap_, gc_, area_.x, area_.y, 0, 0, area_.width,
                  area_.height);
  }

  /// From now on only `places` are drawn to.
  void Limit(const std::vector<PixelRect>& places) {
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(places.size());
    for (const PixelRect& place : places) {
      rectangles.push_back(ToRectangle(Shift(place, -area_.x, -area_.y)));
    }
    xcb_xfixes_set_region(connection_, region_, rectangles.size(), rectangles.data());
    xcb_xfixes_set_gc_clip_region(connection_, gc_, region_, 0, 0);
  }

  /// What the root window shows of itself in `place` where nothing lies on it. The server paints it
  /// into a window, strip by strip, that nobody sees: it is manually redirected, and gone before
  /// the grab ends.
  void DrawBackground(const PixelRect& place) {
    const uint32_t values[] = {XCB_BACK_PIXMAP_PARENT_RELATIVE, /*override_redirect=*/1};
    const uint32_t below = XCB_STACK_MODE_BELOW;
    const xcb_window_t window = xcb_generate_id(connection_);
    const xcb_pixmap_t contents = xcb_generate_id(connection_);
    const auto height = std::min(place.height, kStripHeight);
    const xcb_rectangle_t all = ToRectangle({0, 0, place.width, height});
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_.root, place.x, place.y,
                      all.width, all.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_.root_visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_composite_redirect_window(connection_, window, XCB_COMPOSITE_REDIRECT_MANUAL);
    // No pointer enters it: its region for input is the empty one.
    xcb_xfixes_set_window_shape_region(connection_, window, XCB_SHAPE_SK_INPUT, 0, 0, clip_);
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_map_window(connection_, window);
    xcb_composite_name_window_pixmap(connection_, window, contents);
    // The contents begin as a copy of the screen, and a root without background leaves them so.
    xcb_poly_fill_rectangle(connection_, contents, black_gc_, 1, &all);
    for (int32_t y = place.y; y < place.y + place.height; y += height) {
      const auto top = static_cast<uint32_t>(y);
      xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_Y, &top);
      xcb_clear_area(connection_, /*exposures=*/0, window, 0, 0, 0, 0);
      xcb_copy_area(connection_, contents, pixmap_, gc_, 0, 0, place.x - area_.x, y - area_.y,
                    all.width, all.height);
    }
    xcb_free_pixmap(connection_, contents);
    xcb_destroy_window(connection_, window);
  }

  /// The same where a compositing manager paints the root window: the pixmap that programs which
  /// set a background announce, or black.
  void DrawAnnouncedBackground() {
    const xcb_rectangle_t all = ToRectangle({0, 0, area_.width, area_.height});
    xcb_poly_fill_rectangle(connection_, pixmap_, black_gc_, 1, &all);
    const xcb_pixmap_t background = AnnouncedBackground();
    if (background == XCB_NONE) return;
    const uint32_t tiled[] = {XCB_FILL_STYLE_TILED, background, static_cast<uint32_t>(-area_.x),
                              static_cast<uint32_t>(-area_.y)};
    const xcb_gcontext_t gc = xcb_generate_id(connection_);
    xcb_create_gc(connection_, gc, pixmap_,
                  XCB_GC_FILL_STYLE | XCB_GC_TILE | XCB_GC_TILE_STIPPLE_ORIGIN_X |
                      XCB_GC_TILE_STIPPLE_ORIGIN_Y,
                  tiled);
    xcb_poly_fill_rectangle(connection_, pixmap_, gc, 1, &all);
    xcb_free_gc(connection_, gc);
  }

  /// One window over what is there, with `blanks` blackened. Its alpha counts when it `blends`.
  void DrawWindow(const TopWindow& window, const std::vector<PixelRect>& blanks, bool blends) {
    const PixelRect shown = Intersect(window.bounds, area_);
    if (shown.empty()) return;
    const xcb_pixmap_t contents = xcb_generate_id(connection_);
    const xcb_xfixes_region_t shape = xcb_generate_id(connection_);
    xcb_composite_name_window_pixmap(connection_, window.id, contents);
    xcb_xfixes_create_region_from_window(connection_, shape, window.id, XCB_SHAPE_SK_BOUNDING);
    xcb_xfixes_translate_region(connection_, shape, window.bounds.x + window.border_px - area_.x,
                                window.bounds.y + window.border_px - area_.y);
    xcb_xfixes_intersect_region(connection_, shape, region_, clip_);
    const bool is_faded = blends && window.opacity != UINT32_MAX;
    if (window.depth == screen_.root_depth && !is_faded) {
      xcb_xfixes_set_gc_clip_region(connection_, gc_, clip_, 0, 0);
      xcb_copy_area(connection_, contents, pixmap_, gc_, shown.x - window.bounds.x,
                    shown.y - window.bounds.y, shown.x - area_.x, shown.y - area_.y, shown.width,
                    shown.height);
    } else {
      CompositeContents(contents, window, shown, blends);
    }
    if (!blanks.empty()) FillBlack(blanks);
    xcb_xfixes_destroy_region(connection_, shape);
    xcb_free_pixmap(connection_, contents);
  }

  /// Whether everything could be drawn.
  bool is_complete() const { return is_complete_; }

  RawImage Fetch() {
    if (memory_) return {.pixels = memory_->data(), .memory = memory_};
    return FetchPixels(session_, pixmap_, {0, 0, area_.width, area_.height}, format_);
  }

 private:
  void CreatePixmap() {
    if (support_.has_shared_pixmaps) {
      memory_ = ReserveMemory(&session_.link(), format_.StrideFor(area_.width) * area_.height);
    }
    if (memory_) {
      xcb_shm_create_pixmap(connection_, pixmap_, screen_.root, area_.width, area_.height,
                            screen_.root_depth, memory_->segment(), 0);
    } else {
      xcb_create_pixmap(connection_, screen_.root_depth, pixmap_, screen_.root, area_.width,
                        area_.height);
    }
  }

  xcb_pixmap_t AnnouncedBackground() {
    const xcb_atom_t name = session_.link().window_watch->support().atoms.xrootpmap_id;
    const auto property =
        Await(connection_, xcb_get_property_reply,
              xcb_get_property(connection_, false, screen_.root, name, XCB_ATOM_PIXMAP, 0, 1));
    is_complete_ &= property != nullptr;
    const xcb_pixmap_t pixmap = property ? ReadCard32(*property).value_or(XCB_NONE) : XCB_NONE;
    if (pixmap == XCB_NONE) return XCB_NONE;
    // The program that made it may have freed it, or made it for another depth.
    const auto geometry =
        Await(connection_, xcb_get_geometry_reply, xcb_get_geometry(connection_, pixmap));
    return geometry && geometry->depth == screen_.root_depth ? pixmap : xcb_pixmap_t{XCB_NONE};
  }

  void CompositeContents(xcb_pixmap_t contents, const TopWindow& window, const PixelRect& shown,
                         bool blends) {
    const auto format = support_.formats.find(window.visual);
    if (format == support_.formats.end()) {
      is_complete_ = false;
      return;
    }
    const xcb_render_picture_t source = xcb_generate_id(connection_);
    xcb_render_picture_t mask = XCB_NONE;
    xcb_render_create_picture(connection_, source, contents, format->second.id, 0, nullptr);
    const bool is_faded = blends && window.opacity != UINT32_MAX;
    if (is_faded) {
      mask = xcb_generate_id(connection_);
      const auto alpha = static_cast<uint16_t>(window.opacity >> 16);
      xcb_render_create_solid_fill(connection_, mask, {alpha, alpha, alpha, alpha});
    }
    // The X server itself shows a window's colours, and never its alpha.
    const bool is_over = blends && (format->second.has_alpha || is_faded);
    xcb_xfixes_set_picture_clip_region(connection_, picture_, clip_, 0, 0);
    xcb_render_composite(connection_, is_over ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC,
                         source, mask, picture_, shown.x - window.bounds.x,
                         shown.y - window.bounds.y, 0, 0, shown.x - area_.x, shown.y - area_.y,
                         shown.width, shown.height);
    if (mask != XCB_NONE) xcb_render_free_picture(connection_, mask);
    xcb_render_free_picture(connection_, source);
  }

  /// Within the clip of the window that was drawn last.
  void FillBlack(const std::vector<PixelRect>& places) {
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(places.size());
    for (const PixelRect& place : places) {
      const PixelRect inside = Intersect(place, area_);
      rectangles.push_back(ToRectangle(Shift(inside, -area_.x, -area_.y)));
    }
    xcb_xfixes_set_gc_clip_region(connection_, black_gc_, clip_, 0, 0);
    xcb_poly_fill_rectangle(connection_, pixmap_, black_gc_, rectangles.size(), rectangles.data());
    xcb_xfixes_set_gc_clip_region(connection_, black_gc_, XCB_NONE, 0, 0);
  }

  const Session& session_;
  xcb_connection_t* const connection_;
  const xcb_screen_t& screen_;
  const CanvasSupport& support_;
  const PixelRect area_;
  const PixelFormat format_;
  const xcb_pixmap_t pixmap_ = xcb_generate_id(connection_);
  const xcb_gcontext_t gc_ = xcb_generate_id(connection_);
  const xcb_gcontext_t black_gc_ = xcb_generate_id(connection_);
  const xcb_render_picture_t picture_ = xcb_generate_id(connection_);
  const xcb_xfixes_region_t region_ = xcb_generate_id(connection_);  // what is drawn to
  const xcb_xfixes_region_t clip_ = xcb_generate_id(connection_);    // what of it a window covers
  std::shared_ptr<SharedMemory> memory_;  // of the pixmap, when it is shared
  bool is_complete_ = true;
};

double PartOf(const PixelRect& area, const std::vector<PixelRect>& places) {
  double sum = 0;
  for (const PixelRect& place : places) sum += double(place.width) * place.height;
  return sum / (double(area.width) * area.height);
}

PixelRect BoundingBox(const std::vector<PixelRect>& places) {
  PixelRect box = places.front();
  for (const PixelRect& place : places) {
    const int32_t right = std::max(box.x + box.width, place.x + place.width);
    const int32_t bottom = std::max(box.y + box.height, place.y + place.height);
    box.x = std::min(box.x, place.x);
    box.y = std::min(box.y, place.y);
    box.width = right - box.x;
    box.height = bottom - box.y;
  }
  return box;
}

bool MeetsAny(const PixelRect& bounds, const std::vector<PixelRect>& places) {
  return std::any_of(places.begin(), places.end(), [&bounds](const PixelRect& place) {
    return !Intersect(bounds, place).empty();
  });
}

}  // namespace

std::optional<CanvasSupport> QueryCanvasSupport(const Session& session) {
  xcb_connection_t* const connection = session.connection();
  CanvasSupport support;
  for (xcb_extension_t* extension : {&xcb_composite_id, &xcb_render_id, &xcb_xfixes_id}) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, extension);
    if (!data || !data->present) return std::nullopt;
  }
  const auto composite_cookie = xcb_composite_query_version(connection, 0, 4);
  const auto render_cookie = xcb_render_query_version(connection, 0, 11);
  const auto formats_cookie = xcb_render_query_pict_formats(connection);
  const auto composite = Await(connection, xcb_composite_query_version_reply, composite_cookie);
  const auto render = Await(connection, xcb_render_query_version_reply, render_cookie);
  const auto formats = Await(connection, xcb_render_query_pict_formats_reply, formats_cookie);
  // Naming the pixmap of a window came with 0.2.
  if (!composite || !render || !formats) return std::nullopt;
  if (composite->major_version == 0 && composite->minor_version < 2) return std::nullopt;
  std::map<xcb_render_pictformat_t, bool> has_alpha;
  auto infos = xcb_render_query_pict_formats_formats_iterator(formats.get());
  for (; infos.rem > 0; xcb_render_pictforminfo_next(&infos)) {
    has_alpha[infos.data->id] = infos.data->direct.alpha_mask != 0;
  }
  auto screens = xcb_render_query_pict_formats_screens_iterator(formats.get());
  for (; screens.rem > 0; xcb_render_pictscreen_next(&screens)) {
    auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
    for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
      auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
      for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
        const xcb_render_pictformat_t id = visuals.data->format;
        support.formats[visuals.data->visual] = {.id = id, .has_alpha = has_alpha[id]};
      }
    }
  }
  if (!support.formats.contains(session.screen().root_visual)) return std::nullopt;
  if (session.link().has_shared_memory) {
    const auto shm =
        Await(connection, xcb_shm_query_version_reply, xcb_shm_query_version(connection));
    support.has_shared_pixmaps =
        shm && shm->shared_pixmaps && shm->pixmap_format == XCB_IMAGE_FORMAT_Z_PIXMAP;
  }
  return support;
}

RawImage DrawWithout(const Session& session, const CanvasSupport& support, const WindowTree& tree,
                     const std::vector<Exclusion>& exclusions, const PixelRect& area,
                     const PixelFormat& format) {
  const ErrorTrap trap(session);
  Canvas canvas(session, support, area, format);
  std::vector<PixelRect> places = CoveredPlaces(tree, exclusions, area);
  if (tree.is_composited || PartOf(area, places) > kMostPatched) {
    places = {area};
  } else {
    canvas.CopyScreen();
  }
  if (!places.empty()) {
    canvas.Limit(places);
    if (tree.is_composited) {
      canvas.DrawAnnouncedBackground();
    } else {
      canvas.DrawBackground(BoundingBox(places));
    }
  }
  for (size_t top = 0; top < tree.tops.size(); ++top) {
    const TopWindow& window = tree.tops[top];
    if (!window.is_shown || exclusions[top].is_whole || !MeetsAny(window.bounds, places)) continue;
    canvas.DrawWindow(window, exclusions[top].parts, tree.is_composited);
  }
  RawImage image = canvas.Fetch();
  if (!image.pixels) return image;
  if (!trap.Succeeded() || !canvas.is_complete()) {
    const std::string lost = session.error();
    return {.error = lost.empty() ? "the X server refused to leave windows out" : lost};
  }
  return image;
}

}  // namespace deskhand::platform
