// Servicing the main queue where the host does not: a plain Node.js process on macOS. Only a
// backend whose main queue is the host's to service has it; what else there is works without.
// Thread: the main thread, but for what says otherwise.
#pragma once

#include <string>

namespace deskhand::platform {

/// Whether the calling thread's run loop is the one that services the main queue. Thread: any.
bool IsMainThread();

/// Makes the process known to the window server, as a graphical host is from its start.
void ConnectToWindowServer();

/// Runs what is waiting in the main queue now, inside a call scope of its own. Returns soon, also
/// when more and more comes; never waits.
void ServiceMainQueue();

/// A function that a loaded library exports, which stays loaded from then on; null when `file` is
/// not loaded or has none of this name. Thread: any.
void* FindInLoadedLibrary(const std::string& file, const char* name);

}  // namespace deskhand::platform
