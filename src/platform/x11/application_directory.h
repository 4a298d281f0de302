// What desktop entries and processes tell of applications, for all that asks about them outside of
// pictures. Threads: any.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "platform/x11/application_identity.h"

namespace deskhand::platform {

struct ApplicationDescription {
  std::optional<std::string> bundle_id = {};
  std::optional<std::string> name = {};  // the entry's in the user's language, else the class
  bool is_shown = true;                  // in menus; also without an entry
};

class ApplicationDirectory {
 public:
  /// The process's own.
  static ApplicationDirectory& Get();

  /// Learns of changes, which takes milliseconds when there are any, and returns a number that is
  /// another one then.
  uint64_t Refresh();

  /// The application that such a window belongs to, see ApplicationIdentities.
  ApplicationDescription Describe(const WindowFacts& window);

  /// The entry of this id, as it is now; none when there is none.
  std::optional<DesktopEntry> Find(const std::string& id);

 private:
  std::mutex mutex_;
  ApplicationIdentities identities_;
  uint64_t generation_ = 0;
};

}  // namespace deskhand::platform
