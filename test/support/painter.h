// What the parts of the painter share. Space: pixels of the root window, y down; a size is that
// inside of the border. One thread.
#pragma once

#include <stdbool.h>
#include <stdint.h>
#include <xcb/xcb.h>

enum {
  kNameSize = 64,
  kPatienceMs = 5000,
};

// When a window without a background puts its colour on the screen.
enum Painting {
  kServerPaints,  // it has a background
  kPaintsNothing,
  kPaintsOnce,       // all of it, when it is first told to
  kPaintsWhenAsked,  // whenever a part of it is exposed
  kPaintsFrameOnce,  // four thin rectangles along its edges, when it is first told to
};

// What is to become a window.
struct Wish {
  char name[kNameSize];
  int16_t x, y;
  uint16_t width, height;
  uint32_t colour;        // RRGGBB; with `argb` AARRGGBB, premultiplied
  char class[kNameSize];  // "instance/class" or "-"
  bool unmanaged, argb, ring;
  uint16_t border;
  uint32_t border_colour;  // as `colour`
  enum Painting painting;
  xcb_window_t transient_for;
};

extern xcb_connection_t* connection;
extern xcb_screen_t* screen;

xcb_atom_t Atom(const char* name);

// The pixel of an opaque colour RRGGBB in the screen's own visual.
uint32_t Pixel(uint32_t colour);

// The window of that name, or the one whose identifier "0x..." is; XCB_NONE for any other text.
xcb_window_t Find(const char* name);

// Reads "NAME X Y WIDTH HEIGHT COLOUR CLASS managed|unmanaged [OPTION...]".
bool ReadWish(const char* text, struct Wish* wish);

// Asks for a window to be made and shown; XCB_NONE when there are too many.
xcb_window_t Open(const struct Wish* wish);

void Close(xcb_window_t window);

// All requests so far have been carried out, and what was exposed has been painted.
bool Settle(void);

// Waits for an event of that type for a window, then settles.
bool WaitFor(xcb_window_t window, uint8_t type, int patience_ms);

// The commands `background`, `wallpaper` and `grab`; announced is a wallpaper that properties of
// the root window tell of too.
bool SetBackground(const char* arguments);
bool SetWallpaper(const char* arguments);
bool GrabScreen(const char* path);

// "SEED WINDOW-ARGUMENTS": from now on each StormOn() opens, moves, raises, resizes, hides or
// closes a window like that one, at random inside of its rectangle. With `steady` as the last word
// they stay open.
bool StartStorm(const char* arguments);
bool IsStorming(void);
void StormOn(void);

// Closes the windows of the storm; how often it has changed something.
unsigned EndStorm(void);
