// What the user allows this process to do. Nothing is cached. Threads: the JavaScript threads.
#pragma once

namespace deskhand::platform {

/// Whether this process may make synthetic input now.
bool HasAccessibility();

/// The same; when it may not, the system asks the user, and the call does not wait for the answer.
bool RequestAccessibility();

/// Whether this process may read the screen now.
bool HasScreenRecording();

/// As RequestAccessibility().
bool RequestScreenRecording();

}  // namespace deskhand::platform
