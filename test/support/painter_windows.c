// The painter's windows: how they are made, found, and kept painted.
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <xcb/shape.h>

#include "painter.h"

enum {
  kMostWindows = 128,
  kNormalHintsWords = 18,
  kUserPositionSizeGravity = 1 | 2 | 512,
  kFrameThickness = 4,
  kWholeWindow = 0x7fff,
};

struct Window {
  char name[kNameSize];
  xcb_window_t id;
  xcb_gcontext_t context;  // of the colour, when the painter paints it
  enum Painting painting;
  uint16_t width, height;
};

static struct Window windows[kMostWindows];
static int window_count;

static struct Window* Entry(xcb_window_t id) {
  for (int index = 0; index < window_count; ++index) {
    if (windows[index].id == id) return &windows[index];
  }
  return NULL;
}

xcb_window_t Find(const char* name) {
  if (strncmp(name, "0x", 2) == 0) return strtoul(name, NULL, 16);
  for (int index = 0; index < window_count; ++index) {
    if (strcmp(windows[index].name, name) == 0) return windows[index].id;
  }
  return XCB_NONE;
}

static bool ReadOption(char* option, struct Wish* wish) {
  static const struct {
    const char* name;
    enum Painting painting;
  } paintings[] = {{"nothing", kPaintsNothing},
                   {"once", kPaintsOnce},
                   {"asked", kPaintsWhenAsked},
                   {"frame", kPaintsFrameOnce}};
  for (size_t index = 0; index < sizeof(paintings) / sizeof(*paintings); ++index) {
    if (strcmp(option, paintings[index].name) != 0) continue;
    wish->painting = paintings[index].painting;
    return true;
  }
  if (strcmp(option, "argb") == 0) return wish->argb = true;
  if (strcmp(option, "ring") == 0) return wish->ring = true;
  if (strncmp(option, "for=", 4) == 0) {
    wish->transient_for = Find(option + 4);
    return wish->transient_for != XCB_NONE;
  }
  return sscanf(option, "border=%hu,%x", &wish->border, &wish->border_colour) == 2;
}

bool ReadWish(const char* text, struct Wish* wish) {
  char manager[kNameSize];
  int length = 0;
  *wish = (struct Wish){0};
  if (sscanf(text, "%63s %hd %hd %hu %hu %x %63s %63s%n", wish->name, &wish->x, &wish->y,
             &wish->width, &wish->height, &wish->colour, wish->class, manager, &length) != 8) {
    return false;
  }
  wish->unmanaged = strcmp(manager, "unmanaged") == 0;
  char options[256];
  snprintf(options, sizeof(options), "%s", text + length);
  for (char* option = strtok(options, " "); option; option = strtok(NULL, " ")) {
    if (!ReadOption(option, wish)) return false;
  }
  return true;
}

// A visual with an alpha channel, and a colour map of it; made once.
static xcb_visualid_t AlphaVisual(xcb_colormap_t* colours) {
  static xcb_colormap_t made;
  xcb_depth_iterator_t depth = xcb_screen_allowed_depths_iterator(screen);
  while (depth.rem && depth.data->depth != 32) xcb_depth_next(&depth);
  if (!depth.rem || depth.data->visuals_len == 0) return XCB_NONE;
  const xcb_visualid_t visual = xcb_depth_visuals(depth.data)->visual_id;
  if (!made) {
    made = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, made, screen->root, visual);
  }
  *colours = made;
  return visual;
}

// The user's own wish, so that a window manager puts the window exactly there.
static void SetNormalHints(xcb_window_t window) {
  uint32_t hints[kNormalHintsWords] = {kUserPositionSizeGravity};
  hints[kNormalHintsWords - 1] = XCB_GRAVITY_STATIC;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, kNormalHintsWords, hints);
}

// "instance/class" as two strings, each with its NUL.
static void SetClass(xcb_window_t window, const char* text) {
  char class[kNameSize];
  const size_t length = strlen(text) + 1;
  memcpy(class, text, length);
  char* slash = strchr(class, '/');
  if (slash) *slash = '\0';
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                      8, length, class);
}

static void SetProperties(xcb_window_t window, const struct Wish* wish) {
  SetNormalHints(window);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, strlen(wish->name), wish->name);
  if (strcmp(wish->class, "-") != 0) SetClass(window, wish->class);
  if (wish->transient_for) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_TRANSIENT_FOR,
                        XCB_ATOM_WINDOW, 32, 1, &wish->transient_for);
  }
}

// The bounding shape leaves the middle third of both directions open.
static void ShapeRing(xcb_window_t window, uint16_t width, uint16_t height) {
  const uint16_t w = width / 3, h = height / 3;
  const xcb_rectangle_t hole = {w, h, w, h};
  xcb_shape_rectangles(connection, XCB_SHAPE_SO_SUBTRACT, XCB_SHAPE_SK_BOUNDING, 0, window, 0, 0, 1,
                       &hole);
}

static xcb_window_t Create(const struct Wish* wish, uint32_t pixel) {
  xcb_colormap_t colours = screen->default_colormap;
  const xcb_visualid_t visual = wish->argb ? AlphaVisual(&colours) : screen->root_visual;
  if (!visual) return XCB_NONE;
  const bool has_background = wish->painting == kServerPaints;
  const uint32_t border = wish->argb ? wish->border_colour : Pixel(wish->border_colour);
  const uint32_t events =
      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_VISIBILITY_CHANGE;
  const xcb_create_window_value_list_t values = {.background_pixmap = XCB_BACK_PIXMAP_NONE,
                                                 .background_pixel = pixel,
                                                 .border_pixel = border,
                                                 .override_redirect = wish->unmanaged,
                                                 .event_mask = events,
                                                 .colormap = colours};
  const xcb_window_t window = xcb_generate_id(connection);
  xcb_create_window_aux(
      connection, wish->argb ? 32 : screen->root_depth, window, screen->root, wish->x, wish->y,
      wish->width, wish->height, wish->border, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
      (has_background ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP) | XCB_CW_BORDER_PIXEL |
          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
      &values);
  return window;
}

xcb_window_t Open(const struct Wish* wish) {
  if (window_count == kMostWindows) return XCB_NONE;
  const uint32_t pixel = wish->argb ? wish->colour : Pixel(wish->colour);
  const xcb_window_t window = Create(wish, pixel);
  if (!window) return XCB_NONE;
  struct Window* entry = &windows[window_count++];
  *entry = (struct Window){
      .id = window, .painting = wish->painting, .width = wish->width, .height = wish->height};
  memcpy(entry->name, wish->name, sizeof(entry->name));
  SetProperties(window, wish);
  if (wish->ring) ShapeRing(window, wish->width, wish->height);
  if (wish->painting != kServerPaints) {
    entry->context = xcb_generate_id(connection);
    xcb_create_gc(connection, entry->context, window, XCB_GC_FOREGROUND, &pixel);
  }
  xcb_map_window(connection, window);
  return window;
}

void Close(xcb_window_t window) {
  xcb_destroy_window(connection, window);
  struct Window* entry = Entry(window);
  if (!entry) return;
  if (entry->context) xcb_free_gc(connection, entry->context);
  *entry = windows[--window_count];
}

static void PaintFrame(const struct Window* window) {
  const uint16_t w = window->width, h = window->height, thickness = kFrameThickness;
  const xcb_rectangle_t edges[] = {{0, 0, w, thickness},
                                   {0, (int16_t)(h - thickness), w, thickness},
                                   {0, 0, thickness, h},
                                   {(int16_t)(w - thickness), 0, thickness, h}};
  xcb_poly_fill_rectangle(connection, window->id, window->context, 4, edges);
}

static void Paint(struct Window* window, const xcb_expose_event_t* exposed) {
  switch (window->painting) {
    case kPaintsFrameOnce:
      PaintFrame(window);
      window->painting = kPaintsNothing;
      break;
    case kPaintsOnce:
      xcb_poly_fill_rectangle(connection, window->id, window->context, 1,
                              &(xcb_rectangle_t){0, 0, kWholeWindow, kWholeWindow});
      window->painting = kPaintsNothing;
      break;
    case kPaintsWhenAsked:
      xcb_poly_fill_rectangle(connection, window->id, window->context, 1,
                              &(xcb_rectangle_t){(int16_t)exposed->x, (int16_t)exposed->y,
                                                 exposed->width, exposed->height});
      break;
    default:
      break;
  }
}

// What every event is looked at for, whatever else is waited for.
static void Handle(const xcb_generic_event_t* event) {
  if ((event->response_type & 0x7f) == XCB_EXPOSE) {
    const xcb_expose_event_t* exposed = (const xcb_expose_event_t*)event;
    struct Window* window = Entry(exposed->window);
    if (window) Paint(window, exposed);
  }
}

static bool Sync(void) {
  xcb_get_input_focus_reply_t* reply =
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), NULL);
  free(reply);
  return reply != NULL;
}

bool Settle(void) {
  for (bool is_quiet = false; !is_quiet;) {
    if (!Sync()) return false;
    is_quiet = true;
    for (xcb_generic_event_t* event; (event = xcb_poll_for_event(connection));) {
      Handle(event);
      free(event);
      is_quiet = false;
    }
  }
  return true;
}

static bool Concerns(const xcb_generic_event_t* event, xcb_window_t window, uint8_t type) {
  if ((event->response_type & 0x7f) != type) return false;
  switch (type) {
    case XCB_VISIBILITY_NOTIFY:
      return ((const xcb_visibility_notify_event_t*)event)->window == window;
    case XCB_CONFIGURE_NOTIFY:
      return ((const xcb_configure_notify_event_t*)event)->window == window;
    case XCB_MAP_NOTIFY:
      return ((const xcb_map_notify_event_t*)event)->window == window;
    case XCB_UNMAP_NOTIFY:
      return ((const xcb_unmap_notify_event_t*)event)->window == window;
    default:
      return false;
  }
}

static int64_t NowMs(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (int64_t)now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

bool WaitFor(xcb_window_t window, uint8_t type, int patience_ms) {
  const int64_t deadline = NowMs() + patience_ms;
  xcb_flush(connection);
  while (!xcb_connection_has_error(connection)) {
    xcb_generic_event_t* event = xcb_poll_for_event(connection);
    if (event) {
      const bool found = Concerns(event, window, type);
      Handle(event);
      free(event);
      if (found) return Settle();
      continue;
    }
    const int64_t left_ms = deadline - NowMs();
    if (left_ms <= 0) return false;
    xcb_flush(connection);
    poll(&(struct pollfd){xcb_get_file_descriptor(connection), POLLIN, 0}, 1, (int)left_ms);
  }
  return false;
}
