#include "platform/call_scope.h"

namespace deskhand::platform {

// Nothing here is autoreleased.
CallScope::CallScope() : handle_(nullptr) {}
CallScope::~CallScope() { static_cast<void>(handle_); }

}  // namespace deskhand::platform
