// The screen as a whole: its colours, what is behind all windows, and all that is on it.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "painter.h"

enum {
  kTileWidth = 24,
  kTileHeight = 10,
};

// In any visual: the server says which pixel shows the colour.
uint32_t Pixel(uint32_t colour) {
  xcb_alloc_color_reply_t* reply = xcb_alloc_color_reply(
      connection,
      xcb_alloc_color(connection, screen->default_colormap, (colour >> 16 & 0xff) * 257,
                      (colour >> 8 & 0xff) * 257, (colour & 0xff) * 257),
      NULL);
  const uint32_t pixel = reply ? reply->pixel : 0;
  free(reply);
  return pixel;
}

bool SetBackground(const char* arguments) {
  unsigned colour;
  if (sscanf(arguments, "%x", &colour) != 1) return false;
  const uint32_t pixel = Pixel(colour);
  xcb_change_window_attributes(connection, screen->root, XCB_CW_BACK_PIXEL, &pixel);
  xcb_clear_area(connection, false, screen->root, 0, 0, 0, 0);
  return Settle();
}

// A chequer of four fields, wider than high.
static xcb_pixmap_t MakeTile(uint32_t first, uint32_t second) {
  const xcb_pixmap_t tile = xcb_generate_id(connection);
  const xcb_gcontext_t context = xcb_generate_id(connection);
  const uint16_t w = kTileWidth / 2, h = kTileHeight / 2;
  const xcb_rectangle_t even[] = {{0, 0, w, h}, {w, h, w, h}}, odd[] = {{w, 0, w, h}, {0, h, w, h}};
  xcb_create_pixmap(connection, screen->root_depth, tile, screen->root, kTileWidth, kTileHeight);
  xcb_create_gc(connection, context, tile, XCB_GC_FOREGROUND, (const uint32_t[]){Pixel(first)});
  xcb_poly_fill_rectangle(connection, tile, context, 2, even);
  xcb_change_gc(connection, context, XCB_GC_FOREGROUND, (const uint32_t[]){Pixel(second)});
  xcb_poly_fill_rectangle(connection, tile, context, 2, odd);
  xcb_free_gc(connection, context);
  return tile;
}

bool SetWallpaper(const char* arguments) {
  unsigned first, second;
  char manner[kNameSize];
  if (sscanf(arguments, "%x %x %63s", &first, &second, manner) != 3) return false;
  const xcb_pixmap_t tile = MakeTile(first, second);
  xcb_change_window_attributes(connection, screen->root, XCB_CW_BACK_PIXMAP, &tile);
  if (strcmp(manner, "announced") == 0) {
    static const char* const properties[] = {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"};
    for (int index = 0; index < 2; ++index) {
      xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, Atom(properties[index]),
                          XCB_ATOM_PIXMAP, 32, 1, &tile);
    }
  }
  xcb_clear_area(connection, false, screen->root, 0, 0, 0, 0);
  return Settle();
}

// Screens of 8 bits a colour, as the servers of tests are.
bool GrabScreen(const char* path) {
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
