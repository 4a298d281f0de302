#include "platform/x11/application_directory.h"

namespace deskhand::platform {

// Never destroyed: threads outlive static destruction.
ApplicationDirectory& ApplicationDirectory::Get() {
  static ApplicationDirectory& directory = *new ApplicationDirectory;
  return directory;
}

uint64_t ApplicationDirectory::Refresh() {
  const std::lock_guard lock(mutex_);
  if (identities_.Refresh()) ++generation_;
  return generation_;
}

ApplicationDescription ApplicationDirectory::Describe(const WindowFacts& window) {
  const std::lock_guard lock(mutex_);
  ApplicationDescription description{.bundle_id = identities_.BundleIdOf(window)};
  const DesktopEntry* const entry =
      description.bundle_id ? identities_.EntryWithId(*description.bundle_id) : nullptr;
  if (entry) {
    description.is_shown = entry->is_shown;
    if (!entry->name.empty()) description.name = entry->name;
  }
  if (!description.name && !window.wm_class.empty()) description.name = window.wm_class;
  return description;
}

std::optional<DesktopEntry> ApplicationDirectory::Find(const std::string& id) {
  const std::lock_guard lock(mutex_);
  if (identities_.Refresh()) ++generation_;
  const DesktopEntry* const entry = identities_.EntryWithId(id);
  return entry ? std::optional(*entry) : std::nullopt;
}

}  // namespace deskhand::platform
