// painter - windows of known colours on an X server, for tests.
// Reads one command a line from standard input and answers each with a line of its own, "ok" or
// "error" and why. What a command asks for is on the screen when its answer comes.
//
//   window NAME X Y WIDTH HEIGHT COLOUR CLASS managed|unmanaged
//                       COLOUR is RRGGBB in hexadecimal, CLASS is instance/class or -
//   move NAME X Y       raise NAME      focus NAME       destroy NAME
//   hide NAME           iconify NAME    activate NAME (as a window manager, by _NET_ACTIVE_WINDOW)
//   property NAME ATOM TEXT   sets a text property
//   embed NAME PARENT   makes it a child of that window, in its corner
//   cursor NAME COLOUR  the pointer over that window: a square of 16 pixels, hot spot at (4, 4)
//   pointer X Y         warps the pointer
//   background COLOUR   of the root window
//   grab PATH           writes the whole screen to PATH as a PPM file
//   managed             answers "error" while no window manager shows new windows
#include <poll.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <xcb/xcb.h>

enum {
  kMostWindows = 128,
  kNameSize = 64,
  kPatienceMs = 5000,
  kProbePatienceMs = 100,
  kCursorSize = 16,
  kCursorHotSpot = 4,
  kNormalHintsWords = 18,
  kUserPositionSizeGravity = 1 | 2 | 512,
  kIconicState = 3,
};

struct Window {
  char name[kNameSize];
  xcb_window_t id;
};

static xcb_connection_t* connection;
static xcb_screen_t* screen;
static struct Window windows[kMostWindows];
static int window_count;

static xcb_window_t Find(const char* name) {
  for (int index = 0; index < window_count; ++index) {
    if (strcmp(windows[index].name, name) == 0) return windows[index].id;
  }
  return XCB_NONE;
}

static xcb_atom_t Atom(const char* name) {
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, false, strlen(name), name), NULL);
  const xcb_atom_t atom = reply ? reply->atom : XCB_ATOM_NONE;
  free(reply);
  return atom;
}

// In any visual: the server says which pixel shows the colour.
static uint32_t Pixel(uint32_t colour) {
  xcb_alloc_color_reply_t* reply = xcb_alloc_color_reply(
      connection,
      xcb_alloc_color(connection, screen->default_colormap, (colour >> 16 & 0xff) * 257,
                      (colour >> 8 & 0xff) * 257, (colour & 0xff) * 257),
      NULL);
  const uint32_t pixel = reply ? reply->pixel : 0;
  free(reply);
  return pixel;
}

// All requests so far have been carried out.
static bool Sync(void) {
  xcb_get_input_focus_reply_t* reply =
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), NULL);
  free(reply);
  return reply != NULL;
}

static bool Concerns(const xcb_generic_event_t* event, xcb_window_t window, uint8_t type) {
  if ((event->response_type & 0x7f) != type) return false;
  switch (type) {
    case XCB_VISIBILITY_NOTIFY:
      return ((const xcb_visibility_notify_event_t*)event)->window == window;
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

static bool WaitFor(xcb_window_t window, uint8_t type, int patience_ms) {
  const int64_t deadline = NowMs() + patience_ms;
  xcb_flush(connection);
  while (!xcb_connection_has_error(connection)) {
    xcb_generic_event_t* event = xcb_poll_for_event(connection);
    if (event) {
      const bool found = Concerns(event, window, type);
      free(event);
      if (found) return Sync();
      continue;
    }
    const int64_t left_ms = deadline - NowMs();
    if (left_ms <= 0) return false;
    poll(&(struct pollfd){xcb_get_file_descriptor(connection), POLLIN, 0}, 1, (int)left_ms);
  }
  return false;
}

// The user's own wish, so that a window manager puts the window exactly there.
static void SetNormalHints(xcb_window_t window) {
  uint32_t hints[kNormalHintsWords] = {kUserPositionSizeGravity};
  hints[kNormalHintsWords - 1] = XCB_GRAVITY_STATIC;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                      XCB_ATOM_WM_SIZE_HINTS, 32, kNormalHintsWords, hints);
}

// "instance/class" as two strings, each with its NUL.
static void SetClass(xcb_window_t window, char* text) {
  const size_t length = strlen(text) + 1;
  char* slash = strchr(text, '/');
  if (slash) *slash = '\0';
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                      8, length, text);
}

static bool CreateWindow(const char* arguments) {
  char name[kNameSize], class[kNameSize], manager[kNameSize];
  int x, y;
  unsigned width, height, colour;
  if (window_count == kMostWindows || sscanf(arguments, "%63s %d %d %u %u %x %63s %63s", name, &x,
                                             &y, &width, &height, &colour, class, manager) != 8) {
    return false;
  }
  const bool unmanaged = strcmp(manager, "unmanaged") == 0;
  const uint32_t values[] = {Pixel(colour), unmanaged,
                             XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_VISIBILITY_CHANGE};
  const xcb_window_t window = xcb_generate_id(connection);
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, x, y, width, height, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
  SetNormalHints(window);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                      8, strlen(name), name);
  if (strcmp(class, "-") != 0) SetClass(window, class);
  struct Window* entry = &windows[window_count++];
  memcpy(entry->name, name, sizeof(name));
  entry->id = window;
  xcb_map_window(connection, window);
  return WaitFor(window, XCB_VISIBILITY_NOTIFY, kPatienceMs);
}

static bool Hide(xcb_window_t window) {
  xcb_unmap_window(connection, window);
  return WaitFor(window, XCB_UNMAP_NOTIFY, kPatienceMs);
}

// The window manager does it, see the ICCCM, section 4.1.4.
static bool Iconify(xcb_window_t window) {
  const xcb_client_message_event_t message = {.response_type = XCB_CLIENT_MESSAGE,
                                              .format = 32,
                                              .window = window,
                                              .type = Atom("WM_CHANGE_STATE"),
                                              .data.data32 = {kIconicState}};
  xcb_send_event(connection, false, screen->root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 (const char*)&message);
  return WaitFor(window, XCB_UNMAP_NOTIFY, kPatienceMs);
}

static bool Raise(xcb_window_t window) {
  xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE,
                       &(uint32_t){XCB_STACK_MODE_ABOVE});
  return Sync();
}

static bool Focus(xcb_window_t window) {
  xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  return Sync();
}

static bool Activate(xcb_window_t window) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, Atom("_NET_ACTIVE_WINDOW"),
                      XCB_ATOM_WINDOW, 32, 1, &window);
  return Sync();
}

static bool Destroy(xcb_window_t window) {
  xcb_destroy_window(connection, window);
  return Sync();
}

static bool Move(const char* arguments) {
  char name[kNameSize];
  int position[2];
  if (sscanf(arguments, "%63s %d %d", name, &position[0], &position[1]) != 3) return false;
  const xcb_window_t window = Find(name);
  if (!window) return false;
  xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, position);
  return Sync();
}

static bool Embed(const char* arguments) {
  char name[kNameSize], parent_name[kNameSize];
  if (sscanf(arguments, "%63s %63s", name, parent_name) != 2) return false;
  const xcb_window_t window = Find(name), parent = Find(parent_name);
  if (!window || !parent) return false;
  xcb_reparent_window(connection, window, parent, 0, 0);
  return Sync();
}

static bool SetProperty(const char* arguments) {
  char name[kNameSize], atom[kNameSize], text[kNameSize];
  if (sscanf(arguments, "%63s %63s %63s", name, atom, text) != 3) return false;
  const xcb_window_t window = Find(name);
  if (!window) return false;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, Atom(atom), Atom("UTF8_STRING"), 8,
                      strlen(text), text);
  return Sync();
}

static bool SetCursor(const char* arguments) {
  char name[kNameSize];
  unsigned colour;
  if (sscanf(arguments, "%63s %x", name, &colour) != 2) return false;
  const xcb_window_t window = Find(name);
  if (!window) return false;
  const xcb_pixmap_t shape = xcb_generate_id(connection);
  const xcb_gcontext_t context = xcb_generate_id(connection);
  const xcb_cursor_t cursor = xcb_generate_id(connection);
  xcb_create_pixmap(connection, 1, shape, screen->root, kCursorSize, kCursorSize);
  xcb_create_gc(connection, context, shape, XCB_GC_FOREGROUND, &(uint32_t){1});
  xcb_poly_fill_rectangle(connection, shape, context, 1,
                          &(xcb_rectangle_t){0, 0, kCursorSize, kCursorSize});
  const uint16_t red = (colour >> 16 & 0xff) * 257, green = (colour >> 8 & 0xff) * 257,
                 blue = (colour & 0xff) * 257;
  xcb_create_cursor(connection, cursor, shape, shape, red, green, blue, red, green, blue,
                    kCursorHotSpot, kCursorHotSpot);
  xcb_change_window_attributes(connection, window, XCB_CW_CURSOR, &cursor);
  return Sync();
}

static bool WarpPointer(const char* arguments) {
  int x, y;
  if (sscanf(arguments, "%d %d", &x, &y) != 2) return false;
  xcb_warp_pointer(connection, XCB_NONE, screen->root, 0, 0, 0, 0, x, y);
  return Sync();
}

static bool SetBackground(const char* arguments) {
  unsigned colour;
  if (sscanf(arguments, "%x", &colour) != 1) return false;
  const uint32_t pixel = Pixel(colour);
  xcb_change_window_attributes(connection, screen->root, XCB_CW_BACK_PIXEL, &pixel);
  xcb_clear_area(connection, false, screen->root, 0, 0, 0, 0);
  return Sync();
}

// Screens of 8 bits a colour, as the servers of tests are.
static bool GrabScreen(const char* path) {
  const uint16_t width = screen->width_in_pixels, height = screen->height_in_pixels;
  xcb_get_image_reply_t* reply = xcb_get_image_reply(
      connection,
      xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0, width, height, ~0u),
      NULL);
  FILE* file = reply ? fopen(path, "wb") : NULL;
  const size_t count = (size_t)width * height;
  bool done = false;
  if (file && (size_t)xcb_get_image_data_length(reply) == 4 * count) {
    fprintf(file, "P6\n%d %d\n255\n", width, height);
    const uint8_t* pixel = xcb_get_image_data(reply);
    for (size_t index = 0; index < count; ++index, pixel += 4) {
      fwrite((const uint8_t[]){pixel[2], pixel[1], pixel[0]}, 1, 3, file);
    }
    done = !ferror(file);
  }
  if (file) done = fclose(file) == 0 && done;
  free(reply);
  return done;
}

static bool AnnouncesManager(void) {
  xcb_get_property_reply_t* reply = xcb_get_property_reply(
      connection,
      xcb_get_property(connection, false, screen->root, Atom("_NET_SUPPORTING_WM_CHECK"),
                       XCB_ATOM_WINDOW, 0, 1),
      NULL);
  const bool announced = reply && reply->value_len == 1;
  free(reply);
  return announced;
}

// A window manager that starts announces itself before it looks after windows, and forgets those
// that come between: only a window that was shown proves that it works.
static bool IsManaged(void) {
  if (!AnnouncesManager()) return false;
  const xcb_window_t probe = xcb_generate_id(connection);
  const uint32_t events = XCB_EVENT_MASK_VISIBILITY_CHANGE;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, probe, screen->root, 0, 0, 8, 8, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  xcb_map_window(connection, probe);
  const bool shown = WaitFor(probe, XCB_VISIBILITY_NOTIFY, kProbePatienceMs);
  xcb_destroy_window(connection, probe);
  return Sync() && shown;
}

static bool Run(const char* command, const char* arguments) {
  static const struct {
    const char* name;
    bool (*run)(const char* arguments);
  } plain[] = {{"window", CreateWindow},      {"move", Move},
               {"property", SetProperty},     {"embed", Embed},
               {"cursor", SetCursor},         {"pointer", WarpPointer},
               {"background", SetBackground}, {"grab", GrabScreen}};
  static const struct {
    const char* name;
    bool (*run)(xcb_window_t window);
  } named[] = {{"hide", Hide},   {"iconify", Iconify},   {"raise", Raise},
               {"focus", Focus}, {"activate", Activate}, {"destroy", Destroy}};
  for (size_t index = 0; index < sizeof(plain) / sizeof(*plain); ++index) {
    if (strcmp(command, plain[index].name) == 0) return plain[index].run(arguments);
  }
  for (size_t index = 0; index < sizeof(named) / sizeof(*named); ++index) {
    if (strcmp(command, named[index].name) != 0) continue;
    const xcb_window_t window = Find(arguments);
    return window && named[index].run(window);
  }
  return strcmp(command, "managed") == 0 && IsManaged();
}

int main(void) {
  connection = xcb_connect(NULL, NULL);
  if (xcb_connection_has_error(connection)) return EXIT_FAILURE;
  screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  setvbuf(stdout, NULL, _IOLBF, 0);
  char line[1024];
  while (fgets(line, sizeof(line), stdin)) {
    line[strcspn(line, "\n")] = '\0';
    char* space = strchr(line, ' ');
    if (space) *space = '\0';
    const bool done = Run(line, space ? space + 1 : "");
    printf("%s\n", done ? "ok" : "error");
  }
  xcb_disconnect(connection);
  return EXIT_SUCCESS;
}
