// Reading what other programs have on the clipboard. Thread: any, which waits.
#pragma once

#include <optional>
#include <string>

#include "platform/x11/task_thread.h"

namespace deskhand::platform {

/// The text, as UTF-8; none when there is none, or it is not given in time. A program has until
/// `deadline`, and as much longer as its text would take at 1 MB a second, but is never silent for
/// longer than a second. Texts above 128 MiB count as none.
std::optional<std::string> ReadClipboard(Deadline deadline);

}  // namespace deskhand::platform
