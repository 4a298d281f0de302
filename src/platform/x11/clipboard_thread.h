// The thread that gives the clipboard's text to whoever asks for it, for as long as this process
// lives: programs fetch it when the user pastes, long after it was put there.
// Threads: any. It starts with the first text.
#pragma once

#include <string>

#include "platform/x11/incremental_sends.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

/// Takes the clipboard over with a text. False when there is no server, or it does not answer until
/// `deadline`.
bool OwnClipboard(std::string text, Deadline deadline);

/// What this process has put on the clipboard; null when another program's contents are there, or
/// none. The server is not asked: all that it has told by now counts.
SharedText OwnClipboardText(Deadline deadline);

}  // namespace deskhand::platform
