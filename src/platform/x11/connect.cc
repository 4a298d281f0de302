#include "platform/x11/connect.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

namespace deskhand::platform {
namespace {

/// How much longer a server is waited for that has let an attempt down before. Short, so that many
/// requests to a stopped server do not add up; long enough for one that has just gone on.
constexpr std::chrono::milliseconds kSecondChance{250};

/// Attempts whose caller has gone, by display. xcb_connect cannot be interrupted, so each keeps a
/// thread until its server answers or dies; there is never more than one for a display.
struct Abandoned {
  std::mutex mutex;
  std::condition_variable changed;
  std::multiset<std::string> displays;
};

Abandoned& AbandonedAttempts() {
  static Abandoned& abandoned = *new Abandoned;
  return abandoned;
}

struct Attempt {
  std::string display;
  std::mutex mutex;
  std::condition_variable finished;
  bool done = false;
  bool abandoned = false;
  ConnectResult result;
};

std::string Explain(int xcb_error, const std::string& display) {
  switch (xcb_error) {
    case XCB_CONN_CLOSED_PARSE_ERR:
      return "DISPLAY '" + display + "' is not a display name";
    case XCB_CONN_CLOSED_INVALID_SCREEN:
      return "the X server at '" + display + "' has no such screen";
    default:  // nobody there, or it refuses us: XCB does not tell which
      return "cannot connect to the X server at '" + display + "'";
  }
}

ConnectResult Connect(const std::string& display) {
  ConnectResult result;
  result.connection = xcb_connect(display.c_str(), &result.screen);
  if (const int error = xcb_connection_has_error(result.connection)) {
    xcb_disconnect(result.connection);
    return {nullptr, 0, Explain(error, display)};
  }
  return result;
}

void RunAttempt(const std::shared_ptr<Attempt>& attempt) {
  ConnectResult result = Connect(attempt->display);
  {
    const std::lock_guard lock(attempt->mutex);
    attempt->done = true;
    if (!attempt->abandoned) {
      attempt->result = std::move(result);
      attempt->finished.notify_all();
      return;
    }
  }
  if (result.connection) xcb_disconnect(result.connection);
  Abandoned& abandoned = AbandonedAttempts();
  const std::lock_guard lock(abandoned.mutex);
  abandoned.displays.erase(abandoned.displays.find(attempt->display));
  abandoned.changed.notify_all();
}

}  // namespace

ConnectResult ConnectWithin(const std::string& display, Deadline deadline) {
  const std::string silent = "the X server at '" + display + "' does not answer";
  Abandoned& abandoned = AbandonedAttempts();
  {
    std::unique_lock lock(abandoned.mutex);
    const auto is_free = [&] { return !abandoned.displays.contains(display); };
    const Deadline patience = std::min(deadline, Clock::now() + kSecondChance);
    if (!abandoned.changed.wait_until(lock, patience, is_free)) return {nullptr, 0, silent};
  }
  const auto attempt = std::make_shared<Attempt>();
  attempt->display = display;
  try {
    std::thread(RunAttempt, attempt).detach();
  } catch (const std::system_error&) {
    return {nullptr, 0, "no thread to connect to the X server with"};
  }
  std::unique_lock lock(attempt->mutex);
  if (attempt->finished.wait_until(lock, deadline, [&] { return attempt->done; })) {
    return std::move(attempt->result);
  }
  attempt->abandoned = true;
  const std::lock_guard abandoned_lock(abandoned.mutex);
  abandoned.displays.insert(display);
  return {nullptr, 0, silent};
}

}  // namespace deskhand::platform
