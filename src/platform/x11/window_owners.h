// Which application each window belongs to, kept for as long as the window tells the same.
// Thread: the session's.
#pragma once

#include <cstdint>
#include <unordered_map>

#include "platform/x11/application_directory.h"
#include "platform/x11/window_tree.h"

namespace deskhand::platform {

/// Knows the windows of one connection. A process cannot become another application without its
/// windows going: connections to the server end when it runs another program.
class WindowOwners {
 public:
  /// To be called before windows are asked about: learns of changed entries and forgets the windows
  /// that `tree` has not. Returns what changes with the entries.
  uint64_t Refresh(const WindowTree& tree);

  /// The application that the window itself names. Good until the next Refresh.
  const ApplicationDescription& Of(const ApplicationWindow& window);

 private:
  struct Known {
    WindowFacts facts;
    ApplicationDescription description;
  };

  uint64_t generation_ = 0;
  std::unordered_map<xcb_window_t, Known> known_;
};

}  // namespace deskhand::platform
