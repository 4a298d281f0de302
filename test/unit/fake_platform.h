// A scripted platform behind the seam, for tests of the logic.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/displays.h"
#include "platform/input.h"
#include "platform/screen_capture.h"

namespace deskhand::platform {

struct ShareableContent {
  std::vector<ShareableDisplay> displays;
  std::vector<std::optional<std::string>> applications;
};

struct CapturedImage {};

struct EncodedImage {
  size_t size;
};

/// What the platform answers, and what it was asked. One for the process; Reset() between tests.
struct FakePlatform {
  // Displays
  std::vector<Screen> screens;
  std::optional<Screen> main_screen;
  uint32_t main_display_id = 0;

  // Screen capture
  std::optional<ShareableContent> content = ShareableContent{};
  std::optional<std::string> content_error;
  bool has_image = true;
  std::optional<std::string> image_error;
  std::optional<size_t> encoded_size = 1000;

  // Input
  Point cursor;

  // Main queue: posted work runs on a thread of its own, unless it is held back.
  bool main_queue_is_serviced = true;
  std::vector<std::function<void()>> held_back;

  // What was asked
  std::optional<CaptureFilter> filter;
  std::optional<CaptureConfiguration> configuration;
  std::optional<double> quality;
  std::vector<std::chrono::nanoseconds> waits;  // as asked for; they really last a thousandth

  std::vector<std::string> input;  // scopes, events and pauses in order, a line each
  std::vector<MouseEvent> mouse_events;

  static FakePlatform& Get();
  static void Reset();
};

}  // namespace deskhand::platform
