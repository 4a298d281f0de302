// Which application a window belongs to: its bundle identifier.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/desktop_entries.h"
#include "platform/x11/processes.h"

namespace deskhand::platform {

/// What a window tells of the application that it belongs to; empty or 0 where it tells nothing.
struct WindowFacts {
  std::string wm_instance = {};
  std::string wm_class = {};
  std::string gtk_application_id = {};
  uint32_t process_id = 0;  // of this machine
  bool operator==(const WindowFacts&) const = default;
};

/// Desktop entries, found by what windows and processes say. Where several say the same, the one
/// that is named so comes first, then those that menus show, then the alphabet decides.
class EntryIndex {
 public:
  EntryIndex() = default;
  /// `folders`: see EntryIdOf.
  EntryIndex(std::vector<DesktopEntry> entries, std::vector<std::string> folders);

  /// The id of the entry that the window belongs to, see docs/platforms.md for the rules; none when
  /// no entry claims it. `process` is the window's; may be null.
  std::optional<std::string> EntryOf(const WindowFacts& window, const ProcessFacts* process) const;

  /// Null when there is none of this id. Good for as long as the index.
  const DesktopEntry* WithId(const std::string& id) const;

 private:
  using Places = std::map<std::string, std::vector<size_t>, std::less<>>;

  const DesktopEntry* ByStartupClass(const std::string& name) const;
  const DesktopEntry* ByName(const WindowFacts& window) const;
  const DesktopEntry* ByProcess(const ProcessFacts& process) const;

  std::vector<DesktopEntry> entries_;  // those that menus show first, then by id
  std::vector<std::string> folders_;
  std::map<std::string, size_t, std::less<>> by_id_;
  Places by_startup_class_;
  Places by_program_;
};

class ApplicationIdentities {
 public:
  /// Learns of desktop entries that were added, changed or removed since. Reads files then, which
  /// takes milliseconds: not for while the server is grabbed. Says whether there were any.
  bool Refresh();

  /// The desktop entry's id, else the class of the window; none when neither is known. Reads files
  /// about a process that was not asked about before.
  std::optional<std::string> BundleIdOf(const WindowFacts& window);

  /// Null when there is none of this id. Good until the next Refresh.
  const DesktopEntry* EntryWithId(const std::string& id) const { return index_.WithId(id); }

 private:
  bool is_fresh_ = false;
  DesktopEntries entries_;
  EntryIndex index_;
  Processes processes_;
};

}  // namespace deskhand::platform
