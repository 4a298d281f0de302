// Scripted applications, windows and a clipboard behind the seam, for tests of the logic.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/applications.h"
#include "platform/bundles.h"
#include "platform/windows.h"

namespace deskhand::platform {

struct RunningApplication {
  bool is_regular = true;
  std::optional<std::string> bundle_id = {};
  std::optional<std::string> name = {};
  int32_t pid = 0;
  bool is_hidden = false;
};

struct ApplicationLocation {
  std::optional<std::string> path;
};

struct Bundle {
  std::optional<std::string> id = {};
  bool is_background_only = false;
  bool is_agent = false;
};

struct IndexItem {
  std::optional<std::string> path = {};
  std::optional<std::string> display_name = {};
};

struct IndexedApplications {
  std::vector<IndexItem> items;
};

struct FakeWindow {
  std::optional<int32_t> pid = {};
  std::optional<int32_t> layer = 0;
  std::optional<float> alpha = 1.0f;
  std::optional<std::string> owner_name = {};
  std::optional<Rect> bounds = Rect{0, 0, 100, 100};
};

struct WindowList {
  std::vector<FakeWindow> windows;
};

/// How OpenApplication() answers.
struct OpenAnswer {
  std::optional<RunningApplication> application;
  std::optional<std::string> error;
};

/// What the platform answers, and what it was asked. One for the process; Reset() between tests.
struct FakeApplications {
  int32_t own_pid = 1;
  std::vector<RunningApplication> running;
  std::optional<RunningApplication> frontmost;

  std::map<std::string, ApplicationLocation> locations;  // by bundle identifier
  std::map<std::string, Bundle> bundles;                 // by path
  std::map<std::string, std::string> display_names;      // by path
  std::vector<std::string> folders;
  std::optional<std::vector<IndexItem>> index;  // none: it never answers
  std::vector<OpenAnswer> open_answers;         // given one after the other

  std::optional<std::vector<FakeWindow>> windows = std::vector<FakeWindow>();

  std::optional<std::string> clipboard;

  std::vector<std::string> calls;  // requests and look-ups that tests count, in order

  static FakeApplications& Get();
  static void Reset();
};

}  // namespace deskhand::platform
