// clipboard_peer - a program with manners, good or bad, on the clipboard of an X server, for tests.
// Reads one command a line from standard input and answers each with a line of its own, "ok" or
// "error". All that a command does has happened then.
//
//   offer TARGET=HEX...   takes the clipboard; gives these bytes when asked so, and its TARGETS
//   hang                  takes the clipboard, and answers nobody
//   late                  answers the last request after all; "error" when its window has gone
//   halfway die|hang|BYTES   takes the clipboard, announces a text of many pieces, and gives one:
//                         then it dies, or falls silent, or gives as many bytes at once, and again
//   ask TARGET...         asks for the clipboard; answers "ok" and a word for each, TYPE:HEX or
//                         none; a list of atoms is their names with a comma after each
//   early TARGET          the same, as if it had asked long ago
//   multiple TARGET...    the same in one request
//   stall                 begins to take a text of many pieces, and takes one; answers "ok SIZE"
//   resume                takes the rest; answers "ok BYTES", how many it were in all
//   vanish                destroys the window that a text is being taken with
//   manage [never]        is the clipboard manager, who keeps what it is asked to, or never answers
//   kept                  answers "ok BYTES" when it has kept a text, and has the clipboard
#include "clipboard_peer.h"

#include <poll.h>
#include <stdlib.h>
#include <string.h>

enum {
  kPatienceMs = 5000,
  kLineSize = 4096,
};

xcb_connection_t* connection;
struct Names names;
xcb_window_t owner_window, taker_window;
FILE* answer;

static xcb_screen_t* screen;

xcb_atom_t Atom(const char* name) {
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
      connection, xcb_intern_atom(connection, false, strlen(name), name), NULL);
  const xcb_atom_t atom = reply ? reply->atom : XCB_ATOM_NONE;
  free(reply);
  return atom;
}

xcb_window_t OpenWindow(void) {
  const xcb_window_t window = xcb_generate_id(connection);
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  return window;
}

static void Handle(const xcb_generic_event_t* event) {
  const uint8_t type = event->response_type & 0x7f;
  if (type == XCB_SELECTION_REQUEST) {
    AnswerRequest((const xcb_selection_request_event_t*)event);
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const xcb_property_notify_event_t* change = (const xcb_property_notify_event_t*)event;
    if (change->state == XCB_PROPERTY_DELETE) AnswerDeletion(change);
  }
  xcb_flush(connection);
}

xcb_generic_event_t* AwaitEvent(uint8_t type) {
  xcb_flush(connection);
  for (;;) {
    xcb_generic_event_t* event = xcb_poll_for_event(connection);
    if (event && (event->response_type & 0x7f) == type) return event;
    if (event) {
      Handle(event);
      free(event);
      continue;
    }
    struct pollfd source = {xcb_get_file_descriptor(connection), POLLIN, 0};
    if (poll(&source, 1, kPatienceMs) <= 0 || xcb_connection_has_error(connection)) return NULL;
  }
}

xcb_timestamp_t Now(void) {
  xcb_change_property(connection, XCB_PROP_MODE_APPEND, owner_window, names.transfer,
                      XCB_ATOM_STRING, 8, 0, NULL);
  xcb_property_notify_event_t* event = (void*)AwaitEvent(XCB_PROPERTY_NOTIFY);
  const xcb_timestamp_t now = event ? event->time : XCB_CURRENT_TIME;
  free(event);
  return now;
}

bool Own(xcb_atom_t selection) {
  xcb_set_selection_owner(connection, owner_window, selection, Now());
  xcb_get_selection_owner_reply_t* reply = xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, selection), NULL);
  const bool is_owner = reply && reply->owner == owner_window;
  free(reply);
  return is_owner;
}

struct Command {
  const char* name;
  bool (*run)(char* words);
};

static const struct Command commands[] = {
    {"offer", MakeOffers}, {"hang", Hang},      {"late", AnswerLate},      {"halfway", GoHalfway},
    {"ask", Ask},          {"early", AskEarly}, {"multiple", AskMultiple}, {"stall", Stall},
    {"resume", Resume},    {"vanish", Vanish},  {"manage", Manage},        {"kept", TellKept},
};

static bool Run(const char* name, char* words) {
  for (size_t i = 0; i < sizeof(commands) / sizeof(*commands); ++i) {
    if (strcmp(name, commands[i].name) == 0) return commands[i].run(words);
  }
  return false;
}

static bool ObeyNext(void) {
  static char line[kLineSize];
  if (!fgets(line, sizeof(line), stdin)) return false;
  line[strcspn(line, "\n")] = '\0';
  char* words = strchr(line, ' ');
  if (words) *words++ = '\0';
  char none[] = "";
  char* text = NULL;
  size_t size = 0;
  answer = open_memstream(&text, &size);
  const bool is_done = Run(line, words ? words : none);
  fclose(answer);
  printf(is_done ? "ok%s\n" : "error\n", text);
  free(text);
  return true;
}

// Answers other programs until one of them, or a command, has come.
static bool HandleEvents(void) {
  xcb_flush(connection);
  for (xcb_generic_event_t* event; (event = xcb_poll_for_event(connection));) {
    Handle(event);
    free(event);
  }
  return !xcb_connection_has_error(connection);
}

int main(void) {
  connection = xcb_connect(NULL, NULL);
  if (xcb_connection_has_error(connection)) return EXIT_FAILURE;
  screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  setvbuf(stdin, NULL, _IONBF, 0);
  setvbuf(stdout, NULL, _IOLBF, 0);
  owner_window = OpenWindow();
  taker_window = OpenWindow();
  names = (struct Names){.clipboard = Atom("CLIPBOARD"),
                         .manager = Atom("CLIPBOARD_MANAGER"),
                         .targets = Atom("TARGETS"),
                         .incr = Atom("INCR"),
                         .transfer = Atom("_PEER_TRANSFER"),
                         .utf8 = Atom("UTF8_STRING"),
                         .save_targets = Atom("SAVE_TARGETS")};
  struct pollfd sources[] = {{0, POLLIN, 0}, {xcb_get_file_descriptor(connection), POLLIN, 0}};
  while (HandleEvents() && poll(sources, 2, -1) > 0) {
    if (sources[0].revents && !ObeyNext()) break;
  }
  xcb_disconnect(connection);
  return EXIT_SUCCESS;
}
