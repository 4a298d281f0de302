#include "platform/x11/desktop_entries.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

namespace deskhand::platform {
namespace {

constexpr std::string_view kSuffix = ".desktop";
// Links can make a folder contain itself.
constexpr int kDeepestFolder = 8;

std::string TakeText(char* text) {
  const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
  return text ? text : "";
}

std::string TextOrEmpty(const char* text) { return text ? text : ""; }

std::string FileName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string WithoutSuffix(std::string name) {
  if (name.ends_with(kSuffix)) name.resize(name.size() - kSuffix.size());
  return name;
}

/// "%%" becomes "%"; none when another field code is in it.
std::optional<std::string> WithoutEscapes(std::string_view text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && (++i == text.size() || text[i] != '%')) return std::nullopt;
    plain += text[i];
  }
  return plain;
}

/// How many of `words` belong to env itself, which is the first; none when it cannot be said.
std::optional<size_t> LengthOfEnv(const std::vector<std::string>& words) {
  size_t at = 1;
  for (; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (word == "--") continue;
    if (word == "-u" || word == "-C") {
      ++at;  // and its value
    } else if (word.starts_with("-S") || word.starts_with("--split-string")) {
      return std::nullopt;
    } else if (!word.starts_with('-') && word.find('=') == std::string::npos) {
      break;
    }
  }
  return std::min(at, words.size());
}

/// The file that a command runs, links followed; empty when there is none.
std::string ProgramFile(const std::string& name) {
  const std::string found = TakeText(g_find_program_in_path(name.c_str()));
  if (found.empty()) return {};
  std::error_code error;
  const auto file = std::filesystem::canonical(found, error);
  return error ? std::string() : file.string();
}

DesktopEntry ReadEntry(GDesktopAppInfo* info, std::string id) {
  GAppInfo* const application = G_APP_INFO(info);
  DesktopEntry entry;
  entry.id = std::move(id);
  entry.file = TextOrEmpty(g_desktop_app_info_get_filename(info));
  entry.name = TextOrEmpty(g_app_info_get_name(application));
  entry.startup_wm_class = TextOrEmpty(g_desktop_app_info_get_startup_wm_class(info));
  entry.is_shown = g_app_info_should_show(application);
  // The window of a program that runs in a terminal is the terminal's.
  if (g_desktop_app_info_get_boolean(info, "Terminal")) return entry;
  auto command = ReadCommand(TextOrEmpty(g_app_info_get_commandline(application)));
  if (!command) return entry;
  entry.program = ProgramFile(command->program);
  entry.program_name = FileName(command->program);
  entry.arguments = std::move(command->arguments);
  return entry;
}

/// The entries that GIO lists, by id.
std::map<std::string, DesktopEntry> ListedEntries() {
  std::map<std::string, DesktopEntry> entries;
  const auto free_list = [](GList* list) { g_list_free_full(list, g_object_unref); };
  const std::unique_ptr<GList, decltype(free_list)> list(g_app_info_get_all(), free_list);
  for (const GList* item = list.get(); item; item = item->next) {
    if (!G_IS_DESKTOP_APP_INFO(item->data)) continue;
    std::string id = WithoutSuffix(TextOrEmpty(g_app_info_get_id(G_APP_INFO(item->data))));
    if (!id.empty()) entries.emplace(id, ReadEntry(G_DESKTOP_APP_INFO(item->data), id));
  }
  return entries;
}

/// Adds the entries in `files` that GIO does not list: it reads the folders inside of a folder of
/// entries only when something changes in the outer one.
void AddInnerEntries(const std::vector<std::string>& files,
                     std::map<std::string, DesktopEntry>* entries) {
  const std::vector<std::string> folders = EntryFolders();
  // An entry of this name in an outer folder takes the place of the inner one, or deletes it.
  const auto is_replaced = [&](const std::string& id) {
    return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
      return g_file_test((folder + "/" + id + std::string(kSuffix)).c_str(), G_FILE_TEST_EXISTS);
    });
  };
  std::set<std::string> deleted;
  for (const std::string& file : files) {
    const std::string id = EntryIdOf(file, folders);
    if (!file.ends_with(kSuffix) || entries->contains(id) || deleted.contains(id)) continue;
    const std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)> info(
        g_desktop_app_info_new_from_filename(file.c_str()), g_object_unref);
    if (!info || is_replaced(id)) continue;
    if (g_desktop_app_info_get_is_hidden(info.get())) {
      deleted.insert(id);
    } else {
      entries->emplace(id, ReadEntry(info.get(), id));
    }
  }
}

std::vector<std::string> FoldersInside(const std::vector<std::string>& folders) {
  std::vector<std::string> inside;
  for (const std::string& folder : folders) {
    std::error_code error;
    std::filesystem::directory_iterator item(folder, error);
    for (; !error && item != std::filesystem::directory_iterator(); item.increment(error)) {
      std::error_code ignored;
      if (item->is_directory(ignored)) inside.push_back(item->path().string());
    }
  }
  return inside;
}

/// A file and what changes when it is written to.
using FileState = std::tuple<std::string, ino_t, off_t, time_t, long, time_t, long>;

/// What is in the folders and in those within.
std::vector<FileState> Look(const std::vector<std::string>& folders) {
  using Iterator = std::filesystem::recursive_directory_iterator;
  std::vector<FileState> files;
  for (const std::string& folder : folders) {
    std::error_code error;
    Iterator item(folder, std::filesystem::directory_options::follow_directory_symlink, error);
    for (; !error && item != Iterator(); item.increment(error)) {
      std::string path = item->path().string();
      struct stat now = {};
      if (stat(path.c_str(), &now) == 0) {
        files.emplace_back(std::move(path), now.st_ino, now.st_size, now.st_mtim.tv_sec,
                           now.st_mtim.tv_nsec, now.st_ctim.tv_sec, now.st_ctim.tv_nsec);
      }
      if (item.depth() >= kDeepestFolder) item.disable_recursion_pending();
    }
  }
  return files;
}

}  // namespace

/// Tells when entries change. GIO's monitor watches the folders of entries, but not the folders
/// inside of them: those are looked at.
class DesktopEntries::Watch {
 public:
  Watch() : context_(g_main_context_new()) {
    // The monitor reports to the context that is the thread's when it is made. Nobody else runs
    // this one.
    g_main_context_push_thread_default(context_);
    monitor_ = g_app_info_monitor_get();
    g_main_context_pop_thread_default(context_);
    const auto on_change =
        +[](GAppInfoMonitor*, gpointer self) { static_cast<Watch*>(self)->has_changed_ = true; };
    handler_ = g_signal_connect(monitor_, "changed", G_CALLBACK(on_change), this);
  }

  ~Watch() {
    g_signal_handler_disconnect(monitor_, handler_);
    g_object_unref(monitor_);
    g_main_context_unref(context_);
  }

  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// Whether something changed since the last Begin, or there was none.
  bool HasChanged() {
    while (g_main_context_iteration(context_, false)) {
    }
    return has_changed_ || Look(inner_folders_) != inner_files_;
  }

  /// Called before the entries are read: what changes meanwhile counts as a change.
  void Begin() {
    has_changed_ = false;
    inner_folders_ = FoldersInside(EntryFolders());
    inner_files_ = Look(inner_folders_);
  }

  std::vector<std::string> InnerFiles() const {
    std::vector<std::string> paths;
    for (const FileState& file : inner_files_) paths.push_back(std::get<std::string>(file));
    return paths;
  }

 private:
  GMainContext* const context_;
  GAppInfoMonitor* monitor_ = nullptr;
  gulong handler_ = 0;
  bool has_changed_ = true;
  std::vector<std::string> inner_folders_;
  std::vector<FileState> inner_files_;
};

std::optional<Command> ReadCommand(const std::string& exec) {
  int count = 0;
  char** parsed = nullptr;
  if (!g_shell_parse_argv(exec.c_str(), &count, &parsed, nullptr)) return std::nullopt;
  std::vector<std::string> words(parsed, parsed + count);
  g_strfreev(parsed);
  while (!words.empty() && FileName(words.front()) == "env") {
    const auto length = LengthOfEnv(words);
    if (!length) return std::nullopt;
    words.erase(words.begin(), words.begin() + static_cast<ptrdiff_t>(*length));
  }
  if (words.empty()) return std::nullopt;
  auto program = WithoutEscapes(words.front());
  if (!program || program->empty()) return std::nullopt;
  Command command{.program = std::move(*program), .arguments = {}};
  for (size_t i = 1; i < words.size(); ++i) {
    if (auto argument = WithoutEscapes(words[i])) command.arguments.push_back(std::move(*argument));
  }
  return command;
}

std::vector<std::string> EntryFolders() {
  const auto folder_in = [](const char* data) {
    return TakeText(g_build_filename(data, "applications", nullptr));
  };
  std::vector<std::string> folders{folder_in(g_get_user_data_dir())};
  for (const char* const* data = g_get_system_data_dirs(); *data; ++data) {
    folders.push_back(folder_in(*data));
  }
  return folders;
}

std::string EntryIdOf(const std::string& file, const std::vector<std::string>& folders) {
  std::string id = FileName(file);
  for (const std::string& folder : folders) {
    if (!file.starts_with(folder + "/")) continue;
    id = file.substr(folder.size() + 1);
    std::replace(id.begin(), id.end(), '/', '-');
    break;
  }
  return WithoutSuffix(std::move(id));
}

DesktopEntries::DesktopEntries() = default;
DesktopEntries::~DesktopEntries() = default;

bool DesktopEntries::Refresh() {
  if (!watch_) watch_ = std::make_unique<Watch>();
  if (!watch_->HasChanged()) return false;
  watch_->Begin();
  auto entries = ListedEntries();
  AddInnerEntries(watch_->InnerFiles(), &entries);
  entries_.clear();
  for (auto& [id, entry] : entries) entries_.push_back(std::move(entry));
  return true;
}

}  // namespace deskhand::platform
