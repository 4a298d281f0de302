// The user's processes that were started from desktop entries, whether they have windows or not.
// Threads: any.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/application_directory.h"
#include "platform/x11/task_thread.h"

namespace deskhand::platform {

struct LaunchedProcess {
  int32_t process_id = 0;
  ApplicationDescription description = {};
};

class LaunchedProcesses {
 public:
  /// The process's own.
  static LaunchedProcesses& Get();

  /// Those that run now, by process. Costs next to nothing while no process is started on this
  /// machine, and a look at the new ones when one is. `generation`: of the directory.
  std::vector<LaunchedProcess> Running(uint64_t generation);

 private:
  struct Seen {
    bool is_launched = false;
    std::optional<Deadline> first_seen = {};  // none when it was there before we looked
    ApplicationDescription description = {};
  };

  void Scan(Deadline now);

  std::mutex mutex_;
  std::map<int32_t, Seen> seen_;
  std::string latest_;  // what the system says of the process that was started last
  uint64_t generation_ = 0;
  bool has_young_ = false;
  Deadline last_reading_ = {};  // of all processes
};

/// The last word of /proc/loadavg, see proc(5): the process that was started last.
std::string LatestProcess(std::string_view load_average);

}  // namespace deskhand::platform
