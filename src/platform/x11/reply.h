// Replies of the X server as owned values.
#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace deskhand::platform {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// A reply, or null when the server answered with an error or the connection broke.
template <class T>
using Reply = std::unique_ptr<T, FreeDeleter>;

using XError = Reply<xcb_generic_error_t>;

/// Waits for the reply to `cookie`; `read` is the request's own xcb_..._reply function. The wait is
/// bounded by the session that the connection is used in.
template <class T, class Cookie>
Reply<T> Await(xcb_connection_t* connection,
               T* (*read)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie,
               XError* error = nullptr) {
  xcb_generic_error_t* raw_error = nullptr;
  Reply<T> reply(read(connection, cookie, &raw_error));
  XError owned(raw_error);
  if (error) *error = std::move(owned);
  return reply;
}

}  // namespace deskhand::platform
