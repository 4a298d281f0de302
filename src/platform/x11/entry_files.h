// What single files of desktop entries say, kept for as long as they do not change.
// Threads: any.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <sys/stat.h>

namespace deskhand::platform {

/// An entry of an application whose program is installed.
struct EntryFile {
  std::string name = {};               // in the user's language
  std::string untranslated_name = {};  // as it is for everybody else
  bool is_hidden = false;              // the user has deleted it: Hidden
  bool is_shown = true;                // in menus of this desktop
};

/// The files of entries in a folder, by name; with those of the folders inside, if wanted.
std::vector<std::string> EntryFilesIn(const std::string& folder, bool with_inner);

class EntryFiles {
 public:
  /// The process's own.
  static EntryFiles& Get();

  /// None when there is no such file, it is no entry of an application, or the program is not
  /// installed.
  std::optional<EntryFile> Read(const std::string& path);

  static constexpr size_t kMostKept = 8192;

 private:
  /// What changes when a file is written to.
  using Stamp = std::tuple<ino_t, off_t, time_t, long, time_t, long>;

  struct Known {
    Stamp stamp;
    EntryFile entry;
    std::vector<std::string> programs;  // that it needs
  };

  static std::optional<Known> Parse(const std::string& path);

  std::mutex mutex_;
  std::map<std::string, Known, std::less<>> known_;
};

}  // namespace deskhand::platform
