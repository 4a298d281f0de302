#include "platform/call_scope.h"

#include "platform/x11/call_snapshot.h"

namespace deskhand::platform {
namespace {

thread_local CallSnapshot snapshot;
thread_local bool is_open = false;

}  // namespace

CallSnapshot* CurrentCallSnapshot() { return is_open ? &snapshot : nullptr; }

// The handle marks the outermost scope.
CallScope::CallScope() : handle_(is_open ? nullptr : &snapshot) { is_open = true; }

CallScope::~CallScope() {
  if (!handle_) return;
  snapshot = {};
  is_open = false;
}

}  // namespace deskhand::platform
