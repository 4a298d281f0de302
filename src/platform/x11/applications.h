// Which applications have windows on the screen.
// Threads: those of the session.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/session.h"

namespace deskhand::platform {

/// What a viewable window tells of the application that it belongs to; empty where it tells
/// nothing.
struct ShownWindow {
  std::string wm_instance;
  std::string wm_class;
  std::string gtk_application_id;
  uint32_t process_id = 0;
};

struct ShownWindows {
  std::vector<ShownWindow> windows;
  // Whether the server answered every question. Unless it is grabbed, a window may go before it is
  // asked about.
  bool is_complete = true;
};

/// The viewable windows that name an application: top-level windows, clients in the frames of a
/// window manager, and windows embedded in those of others.
ShownWindows QueryShownWindows(const Session& session);

/// The application's identifier as far as the window itself tells it; none when it does not.
std::optional<std::string> BundleIdOf(const ShownWindow& window);

/// An application as a caller names it, with what its desktop entry says of its windows. Reading
/// the entry takes files; asking about windows does not.
class NamedApplication {
 public:
  explicit NamedApplication(std::string bundle_id);

  const std::string& bundle_id() const { return bundle_id_; }

  /// Whether the window may be this application's: by its own identifier, or by what the desktop
  /// entry says. Errs on the side of yes.
  bool MayOwn(const ShownWindow& window) const;

 private:
  const std::string bundle_id_;
  std::string startup_class_;  // empty where the entry says nothing, or is none
  std::string program_;
};

}  // namespace deskhand::platform
