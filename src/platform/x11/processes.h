// The processes of this machine: which program each runs, and how it was started.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace deskhand::platform {

struct ProcessFacts {
  std::string program = {};                 // the file, links followed
  std::string script = {};                  // that the program interprets, links followed; or empty
  std::string name = {};                    // the last part of the name that it was started by
  std::vector<std::string> arguments = {};  // without that name; the first 16 KiB
  std::string launched_entry = {};  // the file of the desktop entry that started this very process
  bool operator==(const ProcessFacts&) const = default;
};

/// What tells a process and the program it runs from every other that has or had its id: the time
/// of its start and where its program, arguments and environment lie in memory.
using ProcessStamp = std::vector<uint64_t>;

/// Reads /proc/PID/stat, see proc(5); none when it is not of that form.
std::optional<ProcessStamp> ReadStamp(std::string_view stat);

/// The desktop entry that an environment (/proc/PID/environ) says this process was launched from;
/// empty when it says none. Children inherit the variables, so they count only where they name the
/// process itself.
std::string LaunchedEntry(std::string_view environment, uint32_t process_id);

/// The same of a running process; empty, too, when it is another user's.
std::string ReadLaunchedEntry(uint32_t process_id);

/// The interpreter, without its folder, that the first line of a script names, also by way of
/// `env`; empty when it is no script.
std::string InterpreterOf(std::string_view text);

/// Knows processes as long as they run the same program; asking again costs one small file.
class Processes {
 public:
  /// None when the process is gone, or another user's, so that nothing can be known. The pointer
  /// is good until the next call.
  const ProcessFacts* Find(uint32_t process_id);

  size_t kept() const { return known_.size(); }
  static constexpr size_t kMostKept = 256;

 private:
  struct Known {
    ProcessStamp stamp;
    std::optional<ProcessFacts> facts;
    uint64_t last_use = 0;
  };

  void MakeRoom();

  std::map<uint32_t, Known> known_;
  uint64_t uses_ = 0;
};

}  // namespace deskhand::platform
