// Opening an application: bringing it forward when it runs, else launching it, and waiting until a
// window of it is active.
#pragma once

#include "platform/applications.h"
#include "platform/x11/application_location.h"

namespace deskhand::platform {

/// Does nothing but start; goes on, and answers, on the application thread. Thread: any.
void StartOpening(const ApplicationLocation& location, OpenHandler handler);

}  // namespace deskhand::platform
