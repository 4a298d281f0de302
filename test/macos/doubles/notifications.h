// The test's and the frameworks' side of the notification center. Thread: any.
#pragma once

#include <string>

namespace macdoubles {

/// Has the observers of the object's notification run on the queues they asked for.
void PostNotification(const std::string& name, const void* object);

/// Lets go of the observers that never ran. One that ran and is still registered is reported: it
/// would stay for as long as the process lives.
void DropObservers();

}  // namespace macdoubles
