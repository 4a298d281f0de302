// The extent of one JavaScript call, or of one piece of work that handles platform objects.
// Threads: any; a scope is opened and closed on the same thread.
#pragma once

namespace deskhand::platform {

/// Temporary platform objects made while a scope is open are released when it closes: an
/// autorelease pool on macOS, nothing on X11. Scopes nest.
class CallScope {
 public:
  CallScope();
  ~CallScope();
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  void* handle_;
};

}  // namespace deskhand::platform
