// Telling the desktop that a program is being started: the startup notification protocol.
// Thread: the session's.
#pragma once

#include <string>

#include "platform/x11/session.h"

namespace deskhand::platform {

struct StartupSequence {
  std::string id;    // what the program finds in DESKTOP_STARTUP_ID
  std::string name;  // of the application, for the user
};

/// A new sequence, at this time of the server's.
StartupSequence MakeStartup(const std::string& name, xcb_timestamp_t time);

void AnnounceStartup(const Session& session, const StartupSequence& sequence);
void EndStartup(const Session& session, const StartupSequence& sequence);

/// A value of a message, quoted where it must be.
std::string QuoteStartupValue(const std::string& value);

}  // namespace deskhand::platform
