#include "platform/x11/session.h"

#include <cstdint>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <xcb/randr.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include "platform/x11/clipboard_atoms.h"
#include "platform/x11/clipboard_owner.h"
#include "platform/x11/composition.h"
#include "platform/x11/connect.h"
#include "platform/x11/input_state.h"
#include "platform/x11/reply.h"
#include "platform/x11/window_owners.h"
#include "platform/x11/window_watch.h"

namespace deskhand::platform {
namespace {

// Any program can send any event; what it tells need not be so.
constexpr uint8_t kSentByClient = 0x80;

bool IsMessage(const xcb_generic_event_t& event) {
  return (event.response_type & ~kSentByClient) == XCB_CLIENT_MESSAGE;
}

const xcb_screen_t* ScreenByNumber(xcb_connection_t* connection, int number) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
  return screens.data;
}

bool IsLocal(xcb_connection_t* connection) {
  sockaddr_storage address{};
  socklen_t length = sizeof(address);
  const int fd = xcb_get_file_descriptor(connection);
  return getpeername(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
         address.ss_family == AF_UNIX;
}

using Version = std::pair<uint32_t, uint32_t>;  // major and minor

/// The version of an extension, which must be agreed on before its newer requests are used: 0.0
/// when the server has not got it, none when the server does not say. `ask` sends the question,
/// whose reply `read` takes.
template <class Read, class Ask>
std::optional<Version> AgreeOnVersion(xcb_connection_t* connection, xcb_extension_t* extension,
                                      Read read, Ask ask) {
  const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, extension);
  if (!data) return std::nullopt;
  if (!data->present) return Version{};
  const auto reply = Await(connection, read, ask());
  if (!reply) return std::nullopt;
  return Version{reply->major_version, reply->minor_version};
}

/// The other end is gone. Says nothing of a server that merely does not answer.
bool IsHungUp(xcb_connection_t* connection) {
  if (xcb_connection_has_error(connection)) return true;
  pollfd socket{xcb_get_file_descriptor(connection), POLLRDHUP, 0};
  return poll(&socket, 1, 0) > 0;
}

/// Guards every channel's link pointer, so that one channel can ask for the other's display.
std::mutex& Registry() {
  static std::mutex& mutex = *new std::mutex;
  return mutex;
}

/// The display that this process works on: that of a connection that is alive, so that questions
/// and pictures are about the same screen; else what the environment says now.
std::string CurrentDisplay() {
  const std::lock_guard lock(Registry());
  for (const Channel* channel : {&QueryChannel(), &CaptureChannel(), &InputChannel(),
                                 &ClipboardChannel(), &ClipboardReadChannel()}) {
    if (channel->link && !IsHungUp(channel->link->connection)) return channel->link->display;
  }
  // Once for each connection, when XCB itself reads the environment, too.
  // NOLINTNEXTLINE(concurrency-mt-unsafe)
  const char* display = std::getenv("DISPLAY");
  return display ? display : "";
}

void Replace(Channel& channel, std::shared_ptr<Link> link) {
  const std::lock_guard lock(Registry());
  channel.link.swap(link);
}

}  // namespace

Link::Link(xcb_connection_t* opened, int preferred_screen, std::string display_name)
    : connection(opened), display(std::move(display_name)), screen_number(preferred_screen) {
  screen = ScreenByNumber(connection, screen_number);
  for (xcb_extension_t* extension : {&xcb_randr_id, &xcb_xfixes_id, &xcb_shm_id}) {
    xcb_prefetch_extension_data(connection, extension);
  }
  const auto randr = AgreeOnVersion(connection, &xcb_randr_id, xcb_randr_query_version_reply,
                                    [&] { return xcb_randr_query_version(connection, 1, 5); });
  const auto xfixes = AgreeOnVersion(connection, &xcb_xfixes_id, xcb_xfixes_query_version_reply,
                                     [&] { return xcb_xfixes_query_version(connection, 4, 0); });
  const auto shm = AgreeOnVersion(connection, &xcb_shm_id, xcb_shm_query_version_reply,
                                  [&] { return xcb_shm_query_version(connection); });
  is_usable = randr && xfixes && shm;
  if (!is_usable) return;
  has_monitors = *randr >= Version{1, 5};
  has_cursor_images = *xfixes >= Version{1, 0};
  // File descriptors travel over a local socket only.
  has_shared_memory = IsLocal(connection) && *shm >= Version{1, 2};
}

Link::~Link() { xcb_disconnect(connection); }

bool TakeEvents(Link& link) {
  for (bool has_taken = false;; has_taken = true) {
    const Reply<xcb_generic_event_t> event(xcb_poll_for_event(link.connection));
    if (!event) return has_taken;
    if (event->response_type == 0) {
      ++link.error_count;
    } else if (link.clipboard) {
      link.clipboard->Handle(*event);
    } else if ((event->response_type & kSentByClient) == 0) {
      if (link.window_watch) link.window_watch->Handle(*event);
      if (link.composition) link.composition->Handle(*event);
      if (link.input && link.input->keyboard) link.input->keyboard->Handle(*event);
    } else if (link.input && link.input->keyboard && IsMessage(*event)) {
      link.input->keyboard->HandleMessage(
          reinterpret_cast<const xcb_client_message_event_t&>(*event));
    }
  }
}

// Never destroyed: the capture thread outlives static destruction.
Channel& QueryChannel() {
  static Channel& channel = *new Channel;
  return channel;
}

Channel& CaptureChannel() {
  static Channel& channel = *new Channel;
  return channel;
}

Channel& InputChannel() {
  static Channel& channel = *new Channel;
  return channel;
}

Channel& ClipboardChannel() {
  static Channel& channel = *new Channel;
  return channel;
}

Channel& ClipboardReadChannel() {
  static Channel& channel = *new Channel;
  return channel;
}

bool ServeChannel(Channel& channel, Deadline deadline) {
  if (!channel.link) return false;
  {
    const SocketDeadline bound(channel.link->connection, deadline);
    // XCB takes in events while it sends, and nobody would look for them.
    do {
      xcb_flush(channel.link->connection);
    } while (TakeEvents(*channel.link));
  }
  if (IsHungUp(channel.link->connection)) Replace(channel, nullptr);
  return channel.link != nullptr;
}

Session::Session(Channel& channel, Deadline deadline)
    : channel_(channel), has_turn_(TakeTurn(deadline)) {
  if (!has_turn_) {
    error_ = "another request is still waiting for the X server";
    return;
  }
  if (channel_.link) {
    link_ = channel_.link;
    // Events come in parts, too, and what is done with them may wait for the server.
    bound_.emplace(link_->connection, deadline);
    TakeEvents(*link_);
    if (!IsHungUp(link_->connection)) return;
    bound_.reset();
    link_ = nullptr;
    Replace(channel_, nullptr);
  }
  OpenLink(deadline);
  if (!channel_.link) return;
  link_ = channel_.link;
  bound_.emplace(link_->connection, deadline);
}

bool Session::TakeTurn(Deadline deadline) {
  std::unique_lock lock(channel_.mutex);
  if (!channel_.free.wait_until(lock, deadline, [this] { return !channel_.is_taken; })) {
    return false;
  }
  channel_.is_taken = true;
  return true;
}

void Session::OpenLink(Deadline deadline) {
  const std::string display = CurrentDisplay();
  if (display.empty()) {
    error_ = "no X display: DISPLAY is not set";
    return;
  }
  ConnectResult opened = ConnectWithin(display, deadline);
  if (!opened.connection) {
    error_ = std::move(opened.error);
    return;
  }
  std::shared_ptr<Link> link;
  {
    // Ends before the link may: the socket's number must not be another file's by then.
    const SocketDeadline bound(opened.connection, deadline);
    link = std::make_shared<Link>(opened.connection, opened.screen, display);
  }
  if (xcb_connection_has_error(link->connection)) {
    error_ = "lost the X server at '" + display + "' while connecting";
    return;
  }
  // Taking what is unknown for missing would hide displays for as long as the connection lasts.
  if (!link->is_usable) {
    error_ = "the X server at '" + display + "' refused to say what it can do";
    return;
  }
  Replace(channel_, std::move(link));
}

Session::~Session() {
  bound_.reset();
  // A broken connection is of no use to the next session; what it held is freed now.
  if (link_ && (is_abandoned_ || xcb_connection_has_error(link_->connection))) {
    Replace(channel_, nullptr);
  }
  link_ = nullptr;
  if (!has_turn_) return;
  const std::lock_guard lock(channel_.mutex);
  channel_.is_taken = false;
  channel_.free.notify_one();
}

std::string Session::error() const {
  if (!link_) return error_;
  if (bound_->expired()) return "the X server at '" + link_->display + "' does not answer";
  if (xcb_connection_has_error(link_->connection)) {
    return "lost the X server at '" + link_->display + "'";
  }
  return {};
}

}  // namespace deskhand::platform
