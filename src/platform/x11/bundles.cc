#include "platform/bundles.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include <glib.h>

#include "platform/x11/application_directory.h"
#include "platform/x11/application_location.h"
#include "platform/x11/desktop_entries.h"
#include "platform/x11/entry_files.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

struct Bundle {
  std::string bundle_id;
  EntryFile entry;
};

struct IndexedApplications {
  struct Item {
    std::string path;
    std::string name;
  };
  std::vector<Item> items;
};

namespace {

std::shared_ptr<const IndexedApplications> ReadIndex() {
  auto index = std::make_shared<IndexedApplications>();
  const std::vector<std::string> folders = ApplicationFolders();
  // One in an earlier folder can only say of the others that they are as good as gone.
  std::set<std::string> deleted;
  for (const std::string& folder : folders) {
    for (std::string& file : EntryFilesIn(folder, /*with_inner=*/true)) {
      auto entry = EntryFiles::Get().Read(file);
      if (!entry) continue;
      const std::string id = EntryIdOf(file, folders);
      if (entry->is_hidden) deleted.insert(id);
      if (deleted.contains(id)) continue;
      index->items.push_back({std::move(file), std::move(entry->name)});
    }
  }
  return index;
}

}  // namespace

ApplicationLocationRef LocationOfApplication(const std::string& bundle_id) {
  if (bundle_id.empty()) return nullptr;
  const auto entry = ApplicationDirectory::Get().Find(bundle_id);
  // Without an entry it may be a running application that goes by its class. Whether there is one
  // is found out when it is opened: the main queue must not wait for the server.
  return std::make_shared<ApplicationLocation>(
      ApplicationLocation{.bundle_id = bundle_id, .file = entry ? entry->file : ""});
}

std::optional<std::string> PathOf(const ApplicationLocation& location) {
  return location.file.empty() ? std::nullopt : std::optional(location.file);
}

BundleRef BundleAt(const ApplicationLocation& location) {
  return location.file.empty() ? nullptr : BundleAtPath(location.file);
}

BundleRef BundleAtPath(const std::string& path) {
  auto entry = EntryFiles::Get().Read(path);
  // The user has deleted it, and it is there to say so.
  if (!entry || entry->is_hidden) return nullptr;
  return std::make_shared<Bundle>(
      Bundle{.bundle_id = EntryIdOf(path, EntryFolders()), .entry = std::move(*entry)});
}

std::optional<std::string> BundleId(const Bundle& bundle) { return bundle.bundle_id; }

// An entry cannot say that; one that no menu shows is an agent.
bool IsBackgroundOnly(const Bundle&) { return false; }

bool IsAgent(const Bundle& bundle) { return !bundle.entry.is_shown; }

std::vector<std::string> ApplicationFolders() {
  std::vector<std::string> folders;
  for (std::string& folder : EntryFolders()) {
    const bool is_known = std::find(folders.begin(), folders.end(), folder) != folders.end();
    if (!is_known) folders.push_back(std::move(folder));
  }
  return folders;
}

std::string PathInFolder(const std::string& folder, const std::string& name) {
  for (std::string& file : EntryFilesIn(folder, /*with_inner=*/false)) {
    const auto entry = EntryFiles::Get().Read(file);
    if (!entry || entry->is_hidden) continue;
    if (entry->name == name || entry->untranslated_name == name) return std::move(file);
  }
  return folder + "/" + name + ".desktop";
}

bool PathExists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

std::optional<std::string> DisplayNameAtPath(const std::string& path) {
  auto entry = EntryFiles::Get().Read(path);
  return entry ? std::optional(std::move(entry->name)) : std::nullopt;
}

std::string LowerCase(const std::string& text) {
  // GLib lowers valid texts only.
  char* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  char* const lowered = g_utf8_strdown(valid, -1);
  std::string result = lowered;
  g_free(lowered);
  g_free(valid);
  return result;
}

size_t CountOf(const IndexedApplications& applications) { return applications.items.size(); }

std::optional<std::string> PathAt(const IndexedApplications& applications, size_t index) {
  return applications.items[index].path;
}

std::optional<std::string> DisplayNameAt(const IndexedApplications& applications, size_t index) {
  return applications.items[index].name;
}

void QueryApplicationIndex(IndexHandler handler) {
  IndexThread().Post([handler = std::move(handler)] { handler(ReadIndex()); });
}

}  // namespace deskhand::platform
