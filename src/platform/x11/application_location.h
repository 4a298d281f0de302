// Where an application is: its desktop entry.
#pragma once

#include <string>

#include "platform/bundles.h"

namespace deskhand::platform {

struct ApplicationLocation {
  std::string bundle_id = {};
  // Empty when there is no entry: then it is wherever the running application of this identifier
  // is.
  std::string file = {};
};

}  // namespace deskhand::platform
