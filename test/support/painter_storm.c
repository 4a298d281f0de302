// Windows that come, go and change without a pause.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "painter.h"

enum {
  kMostAtOnce = 8,
  kLeastEdge = 24,
  kMostEdge = 240,
  kOpeningPatienceMs = 500,
  kChangePatienceMs = 10,
};

enum Change { kMove, kRaise, kLower, kResize, kHide, kShow, kClose, kChangeCount };

static struct Wish model;  // its place is where all of them stay
static xcb_window_t storm[kMostAtOnce];
static uint64_t random_state;
static unsigned change_count;
static bool is_storming, is_steady;

// A linear congruential generator: the same storm for the same seed. Below `limit`.
static unsigned Random(unsigned limit) {
  random_state = random_state * 6364136223846793005u + 1442695040888963407u;
  return (unsigned)(random_state >> 33) % limit;
}

struct Place {
  int16_t x, y;
  uint16_t width, height;
};

static uint16_t RandomEdge(uint16_t most) {
  const unsigned longest = most < kMostEdge ? most : kMostEdge;
  return longest <= kLeastEdge ? longest : kLeastEdge + Random(longest - kLeastEdge + 1);
}

// Within the model's rectangle, border included.
static struct Place RandomPlace(void) {
  const uint16_t borders = 2 * model.border;
  const uint16_t width = RandomEdge(model.width - borders),
                 height = RandomEdge(model.height - borders);
  return (struct Place){(int16_t)(model.x + Random(model.width - borders - width + 1)),
                        (int16_t)(model.y + Random(model.height - borders - height + 1)), width,
                        height};
}

static xcb_window_t OpenAnywhere(int index) {
  const struct Place place = RandomPlace();
  struct Wish wish = model;
  snprintf(wish.name, sizeof(wish.name), "storm%d", index);
  wish.x = place.x;
  wish.y = place.y;
  wish.width = place.width;
  wish.height = place.height;
  return Open(&wish);
}

// A window manager is waited for: one that is flooded with wishes fulfils none.
static void Place(xcb_window_t window) {
  const struct Place place = RandomPlace();
  const xcb_configure_window_value_list_t values = {
      .x = place.x, .y = place.y, .width = place.width, .height = place.height};
  xcb_configure_window_aux(connection, window,
                           XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                               XCB_CONFIG_WINDOW_HEIGHT,
                           &values);
  WaitFor(window, XCB_CONFIGURE_NOTIFY, kChangePatienceMs);
}

static void Restack(xcb_window_t window, uint32_t mode) {
  xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

static void ChangeOne(int index) {
  const xcb_window_t window = storm[index];
  switch ((enum Change)Random(is_steady ? kHide : kChangeCount)) {
    case kMove:
    case kResize:
      Place(window);
      break;
    case kRaise:
      Restack(window, XCB_STACK_MODE_ABOVE);
      break;
    case kLower:
      Restack(window, XCB_STACK_MODE_BELOW);
      break;
    case kHide:
      xcb_unmap_window(connection, window);
      break;
    case kShow:
      xcb_map_window(connection, window);
      WaitFor(window, XCB_MAP_NOTIFY, kChangePatienceMs);
      break;
    default:
      Close(window);
      storm[index] = XCB_NONE;
  }
}

bool StartStorm(const char* arguments) {
  unsigned seed;
  int length = 0;
  char text[512];
  if (is_storming || sscanf(arguments, "%u %n", &seed, &length) != 1) return false;
  snprintf(text, sizeof(text), "%s", arguments + length);
  char* steady = strstr(text, " steady");
  is_steady = steady != NULL;
  if (steady) *steady = '\0';
  if (!ReadWish(text, &model)) return false;
  random_state = seed;
  change_count = 0;
  return is_storming = true;
}

bool IsStorming(void) { return is_storming; }

void StormOn(void) {
  const int index = (int)Random(kMostAtOnce);
  if (storm[index]) {
    ChangeOne(index);
  } else {
    storm[index] = OpenAnywhere(index);
    WaitFor(storm[index], XCB_VISIBILITY_NOTIFY, kOpeningPatienceMs);
  }
  ++change_count;
  Settle();
}

unsigned EndStorm(void) {
  for (int index = 0; index < kMostAtOnce; ++index) {
    if (storm[index]) Close(storm[index]);
    storm[index] = XCB_NONE;
  }
  is_storming = false;
  Settle();
  return change_count;
}
