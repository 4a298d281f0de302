// painter - windows of known colours on an X server, for tests.
// Reads one command a line from standard input and answers each with a line of its own, "ok" or
// "error" and why. What a command asks for is on the screen when its answer comes, unless a window
// manager or a compositing manager takes part.
//
//   window NAME X Y WIDTH HEIGHT COLOUR CLASS managed|unmanaged [OPTION...]
//                       COLOUR is RRGGBB in hexadecimal, CLASS is instance/class or -
//       argb            with an alpha channel; COLOUR is AARRGGBB, premultiplied
//       ring            shaped: with a hole of a third of its width and height in the middle
//       border=WIDTH,COLOUR
//       nothing | once | asked | frame
//                       without a background, so that what was there stays until it paints: never,
//                       on the first Expose, on each, or on the first a frame of four thin
//                       rectangles
//       for=WINDOW      transient for a window
//   Where a window is looked up, it may also be the identifier 0x... of another process's.
//   move NAME X Y       resize NAME WIDTH HEIGHT
//   raise NAME          lower NAME          focus NAME       destroy NAME
//   forge NAME          sends word that it is hidden, which it is not
//   hide NAME           show NAME           iconify NAME
//   activate NAME       as a window manager, by _NET_ACTIVE_WINDOW
//   id NAME             answers "ok 0x..."
//   property NAME ATOM TEXT   sets a text property
//   embed NAME PARENT   makes it a child of that window, in its corner
//   cursor NAME COLOUR  the pointer over that window: a square of 16 pixels, hot spot at (4, 4)
//   pointer X Y         warps the pointer
//   background COLOUR   of the root window
//   wallpaper COLOUR COLOUR announced|silent   a tile as its background
//   grab PATH           writes the whole screen to PATH as a PPM file
//   settle              paints what has been exposed
//   manage              announces itself as the window manager
//   managed             answers "error" while no window manager shows new windows
//   composited          answers "error" while no compositing manager has announced itself
//   storm SEED WINDOW-ARGUMENTS [steady]   changes many windows as fast as it can
//   calm                ends that; answers "ok" and how many changes there were
#include "painter.h"

#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum {
  kProbePatienceMs = 100,
  kCursorSize = 16,
  kCursorHotSpot = 4,
  kIconicState = 3,
  kLineSize = 1024,
};

xcb_connection_t* connection;
xcb_screen_t* screen;

// What the answer to a command says besides "ok".
static char answer[32];

xcb_atom_t Atom(const char* name) {
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, false, strlen(name), name), NULL);
  const xcb_atom_t atom = reply ? reply->atom : XCB_ATOM_NONE;
  free(reply);
  return atom;
}

static bool CreateWindow(const char* arguments) {
  struct Wish wish;
  if (!ReadWish(arguments, &wish)) return false;
  const xcb_window_t window = Open(&wish);
  return window && WaitFor(window, XCB_VISIBILITY_NOTIFY, kPatienceMs);
}

static bool TellId(xcb_window_t window) {
  snprintf(answer, sizeof(answer), " 0x%x", window);
  return true;
}

static bool Hide(xcb_window_t window) {
  xcb_unmap_window(connection, window);
  return WaitFor(window, XCB_UNMAP_NOTIFY, kPatienceMs);
}

static bool Show(xcb_window_t window) {
  xcb_map_window(connection, window);
  return WaitFor(window, XCB_VISIBILITY_NOTIFY, kPatienceMs);
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

static bool Restack(xcb_window_t window, uint32_t mode) {
  xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
  return Settle();
}

static bool Raise(xcb_window_t window) { return Restack(window, XCB_STACK_MODE_ABOVE); }

static bool Lower(xcb_window_t window) { return Restack(window, XCB_STACK_MODE_BELOW); }

// Tells those who listen that the window is hidden, which it is not. Programs that withdraw a
// window send the like, see the ICCCM, section 4.1.4.
static bool Forge(xcb_window_t window) {
  union {
    xcb_unmap_notify_event_t unmap;
    char bytes[32];
  } event = {.unmap = {.response_type = XCB_UNMAP_NOTIFY, .event = screen->root, .window = window}};
  xcb_send_event(connection, false, screen->root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, event.bytes);
  return Settle();
}

static bool Focus(xcb_window_t window) {
  xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  return Settle();
}

static bool Activate(xcb_window_t window) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, Atom("_NET_ACTIVE_WINDOW"),
                      XCB_ATOM_WINDOW, 32, 1, &window);
  return Settle();
}

static bool Destroy(xcb_window_t window) {
  Close(window);
  return Settle();
}

static bool Configure(const char* arguments, uint16_t mask) {
  char name[kNameSize];
  int values[2];
  if (sscanf(arguments, "%63s %d %d", name, &values[0], &values[1]) != 3) return false;
  const xcb_window_t window = Find(name);
  if (!window) return false;
  xcb_configure_window(connection, window, mask, values);
  return Settle();
}

static bool Move(const char* arguments) {
  return Configure(arguments, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y);
}

static bool Resize(const char* arguments) {
  return Configure(arguments, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT);
}

static bool Embed(const char* arguments) {
  char name[kNameSize], parent_name[kNameSize];
  if (sscanf(arguments, "%63s %63s", name, parent_name) != 2) return false;
  const xcb_window_t window = Find(name), parent = Find(parent_name);
  if (!window || !parent) return false;
  xcb_reparent_window(connection, window, parent, 0, 0);
  return Settle();
}

static bool SetProperty(const char* arguments) {
  char name[kNameSize], atom[kNameSize], text[kNameSize];
  if (sscanf(arguments, "%63s %63s %63s", name, atom, text) != 3) return false;
  const xcb_window_t window = Find(name);
  if (!window) return false;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, Atom(atom), Atom("UTF8_STRING"), 8,
                      strlen(text), text);
  return Settle();
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
  return Settle();
}

static bool WarpPointer(const char* arguments) {
  int x, y;
  if (sscanf(arguments, "%d %d", &x, &y) != 2) return false;
  xcb_warp_pointer(connection, XCB_NONE, screen->root, 0, 0, 0, 0, x, y);
  return Settle();
}

static bool AnnounceManager(void) {
  const xcb_window_t check = xcb_generate_id(connection);
  const xcb_atom_t name = Atom("_NET_SUPPORTING_WM_CHECK");
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, check, screen->root, -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, NULL);
  for (int index = 0; index < 2; ++index) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, index == 0 ? screen->root : check, name,
                        XCB_ATOM_WINDOW, 32, 1, &check);
  }
  return Settle();
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
  return Settle() && shown;
}

static bool IsComposited(void) {
  xcb_get_selection_owner_reply_t* reply = xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, Atom("_NET_WM_CM_S0")), NULL);
  const bool owned = reply && reply->owner;
  free(reply);
  return owned;
}

static bool Calm(void) {
  if (!IsStorming()) return false;
  snprintf(answer, sizeof(answer), " %u", EndStorm());
  return true;
}

static bool Run(const char* command, const char* arguments) {
  static const struct {
    const char* name;
    bool (*run)(const char* arguments);
  } plain[] = {{"window", CreateWindow},
               {"move", Move},
               {"resize", Resize},
               {"property", SetProperty},
               {"embed", Embed},
               {"cursor", SetCursor},
               {"pointer", WarpPointer},
               {"background", SetBackground},
               {"wallpaper", SetWallpaper},
               {"grab", GrabScreen},
               {"storm", StartStorm}};
  static const struct {
    const char* name;
    bool (*run)(xcb_window_t window);
  } named[] = {{"hide", Hide},       {"show", Show},   {"iconify", Iconify}, {"raise", Raise},
               {"lower", Lower},     {"focus", Focus}, {"forge", Forge},     {"activate", Activate},
               {"destroy", Destroy}, {"id", TellId}};
  static const struct {
    const char* name;
    bool (*run)(void);
  } bare[] = {{"manage", AnnounceManager},
              {"managed", IsManaged},
              {"composited", IsComposited},
              {"settle", Settle},
              {"calm", Calm}};
  for (size_t index = 0; index < sizeof(plain) / sizeof(*plain); ++index) {
    if (strcmp(command, plain[index].name) == 0) return plain[index].run(arguments);
  }
  for (size_t index = 0; index < sizeof(named) / sizeof(*named); ++index) {
    if (strcmp(command, named[index].name) != 0) continue;
    const xcb_window_t window = Find(arguments);
    return window && named[index].run(window);
  }
  for (size_t index = 0; index < sizeof(bare) / sizeof(*bare); ++index) {
    if (strcmp(command, bare[index].name) == 0) return bare[index].run();
  }
  return false;
}

static void Obey(char* line) {
  char* space = strchr(line, ' ');
  if (space) *space = '\0';
  answer[0] = '\0';
  // What has happened on the screen since the last command comes first.
  const bool done = Settle() && Run(line, space ? space + 1 : "");
  if (done) {
    printf("ok%s\n", answer);
  } else {
    printf("error\n");
  }
}

// Obeys the commands that have come; false when there will be none any more.
static bool ReadCommands(void) {
  static char text[kLineSize];
  static size_t length;
  const ssize_t count = read(STDIN_FILENO, text + length, sizeof(text) - 1 - length);
  if (count <= 0) return false;
  length += (size_t)count;
  text[length] = '\0';
  char* line = text;
  for (char* end; (end = strchr(line, '\n')); line = end + 1) {
    *end = '\0';
    Obey(line);
  }
  length -= (size_t)(line - text);
  memmove(text, line, length);
  return true;
}

int main(void) {
  connection = xcb_connect(NULL, NULL);
  if (xcb_connection_has_error(connection)) return EXIT_FAILURE;
  screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  setvbuf(stdout, NULL, _IOLBF, 0);
  struct pollfd sources[] = {{STDIN_FILENO, POLLIN, 0},
                             {xcb_get_file_descriptor(connection), POLLIN, 0}};
  while (Settle()) {
    if (IsStorming()) StormOn();
    if (poll(sources, 2, IsStorming() ? 0 : -1) < 0) break;
    if (sources[0].revents && !ReadCommands()) break;
  }
  xcb_disconnect(connection);
  return EXIT_SUCCESS;
}
