#include "platform/x11/entry_files.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

namespace deskhand::platform {
namespace {

constexpr std::string_view kSuffix = ".desktop";
// Links can make a folder contain itself.
constexpr int kDeepestFolder = 8;

std::string TakeText(char* text) {
  const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
  return text ? text : "";
}

bool IsRunnable(const std::string& program) { return access(program.c_str(), X_OK) == 0; }

}  // namespace

std::vector<std::string> EntryFilesIn(const std::string& folder, bool with_inner) {
  using Iterator = std::filesystem::recursive_directory_iterator;
  std::vector<std::string> files;
  std::error_code error;
  Iterator item(folder, std::filesystem::directory_options::follow_directory_symlink, error);
  for (; !error && item != Iterator(); item.increment(error)) {
    if (!with_inner || item.depth() >= kDeepestFolder) item.disable_recursion_pending();
    std::string path = item->path().string();
    if (path.ends_with(kSuffix)) files.push_back(std::move(path));
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Never destroyed: threads outlive static destruction.
EntryFiles& EntryFiles::Get() {
  static EntryFiles& files = *new EntryFiles;
  return files;
}

std::optional<EntryFile> EntryFiles::Read(const std::string& path) {
  if (!path.ends_with(kSuffix)) return std::nullopt;
  struct stat now = {};
  if (stat(path.c_str(), &now) != 0 || !S_ISREG(now.st_mode)) return std::nullopt;
  const Stamp stamp(now.st_ino, now.st_size, now.st_mtim.tv_sec, now.st_mtim.tv_nsec,
                    now.st_ctim.tv_sec, now.st_ctim.tv_nsec);
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(path);
  if (found != known_.end() && found->second.stamp == stamp) {
    const auto& programs = found->second.programs;
    if (std::all_of(programs.begin(), programs.end(), IsRunnable)) return found->second.entry;
  }
  auto known = Parse(path);
  if (!known) {
    known_.erase(path);
    return std::nullopt;
  }
  known->stamp = stamp;
  if (known_.size() >= kMostKept) known_.clear();
  return known_.insert_or_assign(path, std::move(*known)).first->second.entry;
}

std::optional<EntryFiles::Known> EntryFiles::Parse(const std::string& path) {
  // Null, too, when it says that its program must be installed, and it is not.
  const std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)> info(
      g_desktop_app_info_new_from_filename(path.c_str()), g_object_unref);
  if (!info) return std::nullopt;
  GAppInfo* const application = G_APP_INFO(info.get());
  Known known{};
  const char* const name = g_app_info_get_name(application);
  known.entry = {
      .name = name ? name : "",
      .untranslated_name = TakeText(g_desktop_app_info_get_string(info.get(), "Name")),
      .is_hidden = static_cast<bool>(g_desktop_app_info_get_is_hidden(info.get())),
      .is_shown = static_cast<bool>(g_app_info_should_show(application)),
  };
  const char* const executable = g_app_info_get_executable(application);
  for (const std::string& program : {TakeText(g_desktop_app_info_get_string(info.get(), "TryExec")),
                                     std::string(executable ? executable : "")}) {
    if (program.empty()) continue;
    std::string file = TakeText(g_find_program_in_path(program.c_str()));
    if (!file.empty()) known.programs.push_back(std::move(file));
  }
  return known;
}

}  // namespace deskhand::platform
