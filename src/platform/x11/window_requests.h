// Hiding, showing and bringing forward windows, as window managers are asked for it, or without
// one. Errors: windows that have gone are passed over. Thread: the session's.
#pragma once

#include <vector>

#include "platform/x11/screen_windows.h"
#include "platform/x11/session.h"

namespace deskhand::platform {

/// Iconifies those that are not hidden, and marks them; without a window manager they are unmapped.
void HideWindows(const Session& session, const std::vector<ScreenWindow>& windows);

/// Maps those that HideWindows() has hidden, and takes the marks away; when it was none of them,
/// all that are hidden.
void ShowWindows(const Session& session, const std::vector<ScreenWindow>& windows);

/// Raises all that are not hidden, in their order, and makes the foremost one the active window.
/// `windows`: front to back. Shows them first when all are hidden. The session's windows are
/// watched.
void BringForward(const Session& session, const std::vector<ScreenWindow>& windows);

/// The server's time; 0, which means the current one, when it does not say. The session's windows
/// are watched.
xcb_timestamp_t ServerTime(const Session& session);

}  // namespace deskhand::platform
