// Reference A of the benchmark: one picture of the root window for each line of standard input.
// Frozen: README.md says why, and what the lines mean.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <turbojpeg.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include "area_scale.h"

namespace {

struct FreeReply {
  void operator()(void* reply) const { free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

[[noreturn]] void Fail(const char* what) {
  fprintf(stderr, "reference: %s\n", what);
  exit(1);
}

/// The root window's pixels, 4 bytes each, with the pointer drawn in.
class Screen {
 public:
  Screen() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_)) Fail("no X server");
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    if (screen_->root_depth != 24) Fail("the screen has not 24 bits a pixel");
    const int memory = shmget(IPC_PRIVATE, size_t{4} * width() * height(), IPC_CREAT | 0600);
    pixels_ = static_cast<uint8_t*>(shmat(memory, nullptr, 0));
    segment_ = xcb_generate_id(connection_);
    const auto attached = xcb_shm_attach_checked(connection_, segment_, memory, false);
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection_, attached));
    shmctl(memory, IPC_RMID, nullptr);
    if (error || pixels_ == reinterpret_cast<void*>(-1)) Fail("no shared memory");
    // XFixes wants to be asked for its version before anything else.
    const auto version = xcb_xfixes_query_version(connection_, 5, 0);
    Reply<xcb_xfixes_query_version_reply_t>(
        xcb_xfixes_query_version_reply(connection_, version, nullptr));
  }

  int width() const { return screen_->width_in_pixels; }
  int height() const { return screen_->height_in_pixels; }

  const uint8_t* Grab() {
    const auto pointer_cookie = xcb_xfixes_get_cursor_image(connection_);
    const auto pixels_cookie =
        xcb_shm_get_image(connection_, screen_->root, 0, 0, width(), height(), ~0u,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, segment_, 0);
    const Reply<xcb_xfixes_get_cursor_image_reply_t> pointer(
        xcb_xfixes_get_cursor_image_reply(connection_, pointer_cookie, nullptr));
    const Reply<xcb_shm_get_image_reply_t> got(
        xcb_shm_get_image_reply(connection_, pixels_cookie, nullptr));
    if (!pointer || !got) Fail("no picture");
    Draw(pointer.get());
    return pixels_;
  }

 private:
  /// The pointer's colours are premultiplied by its alpha.
  void Draw(xcb_xfixes_get_cursor_image_reply_t* pointer) {
    const uint32_t* over = xcb_xfixes_get_cursor_image_cursor_image(pointer);
    for (int row = 0; row < pointer->height; ++row) {
      for (int column = 0; column < pointer->width; ++column, ++over) {
        const int x = pointer->x - pointer->xhot + column, y = pointer->y - pointer->yhot + row;
        if (x < 0 || y < 0 || x >= width() || y >= height()) continue;
        uint8_t* pixel = pixels_ + (size_t{4} * width() * y + 4 * x);
        for (int channel = 0; channel < 3; ++channel) {
          const int colour = *over >> (8 * channel) & 0xff, rest = 255 - (*over >> 24);
          pixel[channel] = std::min(255, colour + (pixel[channel] * rest + 127) / 255);
        }
      }
    }
  }

  xcb_connection_t* const connection_;
  xcb_screen_t* screen_;
  xcb_shm_seg_t segment_;
  uint8_t* pixels_;
};

/// JPEG of a whole picture at once: 4:2:0, quality 75, the accurate integer transform.
class Jpeg {
 public:
  Jpeg(int width, int height)
      : width_(width), height_(height), bytes_(tjBufSize(width, height, TJSAMP_420)) {}

  size_t Compress(const uint8_t* pixels) {
    unsigned char* out = bytes_.data();
    unsigned long size = bytes_.size();
    const int flags = TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT;
    if (tjCompress2(compressor_, pixels, width_, 4 * width_, height_, TJPF_BGRX, &out, &size,
                    TJSAMP_420, 75, flags) != 0) {
      Fail(tjGetErrorStr2(compressor_));
    }
    return size;
  }

  const uint8_t* bytes() const { return bytes_.data(); }

 private:
  const int width_, height_;
  std::vector<uint8_t> bytes_;
  const tjhandle compressor_ = tjInitCompress();
};

/// Twelve bits, that is two letters, at a time.
class Base64 {
 public:
  Base64() {
    const char* letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int bits = 0; bits < 4096; ++bits) {
      pairs_[bits][0] = letters[bits >> 6];
      pairs_[bits][1] = letters[bits & 63];
    }
  }

  void Convert(const uint8_t* bytes, size_t size, std::string* text) const {
    text->resize((size + 2) / 3 * 4);
    char* to = text->data();
    for (size_t i = 0; i < size; i += 3, to += 4) {
      const size_t left = size - i;
      const uint32_t bits =
          bytes[i] << 16 | (left > 1 ? bytes[i + 1] << 8 : 0) | (left > 2 ? bytes[i + 2] : 0);
      std::memcpy(to, pairs_[bits >> 12], 2);
      std::memcpy(to + 2, pairs_[bits & 4095], 2);
    }
    if (size % 3) text->back() = '=';
    if (size % 3 == 1) (*text)[text->size() - 2] = '=';
  }

 private:
  char pairs_[4096][2];
};

double Now() {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  return Milliseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

int main(int count, char** arguments) {
  const int width = count == 3 ? atoi(arguments[1]) : 0;
  const int height = count == 3 ? atoi(arguments[2]) : 0;
  if (width < 1 || height < 1) Fail("usage: reference WIDTH HEIGHT");
  Screen screen;
  const int least_width = screen.width() / AreaScale::kMostReduction;
  const int least_height = screen.height() / AreaScale::kMostReduction;
  if (width > screen.width() || height > screen.height()) Fail("it does not enlarge");
  if (width <= least_width || height <= least_height) Fail("it does not reduce that much");
  const bool as_it_is = width == screen.width() && height == screen.height();
  AreaScale scale(screen.width(), screen.height(), width, height);
  std::vector<uint8_t> scaled(size_t{4} * width * height);
  Jpeg jpeg(width, height);
  const Base64 base64;
  std::string text;

  for (std::string line; std::getline(std::cin, line);) {
    const double start = Now();
    const uint8_t* pixels = screen.Grab();
    const double grabbed = Now();
    if (!as_it_is) scale.Run(pixels, scaled.data());
    const double scaled_at = Now();
    const size_t size = jpeg.Compress(as_it_is ? pixels : scaled.data());
    const double compressed = Now();
    base64.Convert(jpeg.bytes(), size, &text);
    const double end = Now();
    if (line == "picture") {
      puts(text.c_str());
    } else if (line == "stages") {
      printf("%.3f %.3f %.3f %.3f\n", grabbed - start, scaled_at - grabbed, compressed - scaled_at,
             end - compressed);
    } else {
      printf("%.3f %zu\n", end - start, text.size());
    }
    fflush(stdout);
  }
}
