#include "platform/x11/processes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace deskhand::platform {
namespace {

constexpr size_t kLongestStat = 4096;
constexpr size_t kLongestArguments = 16384;
// More than the kernel gives to a process. GIO's variables come last.
constexpr size_t kLongestEnvironment = size_t{8} << 20;
constexpr size_t kLongestFirstLine = 512;
constexpr size_t kLongestPath = 4096;
// A process that changes while it is looked at is looked at again.
constexpr int kAttempts = 3;

class File {
 public:
  explicit File(const std::string& path, int flags = 0)
      : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | flags)) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// Its beginning, `limit` bytes at most; none when it cannot be read.
  std::optional<std::string> Read(size_t limit) const {
    if (descriptor_ < 0) return std::nullopt;
    std::string text;
    while (text.size() < limit) {
      std::array<char, 4096> part;
      const ssize_t count =
          read(descriptor_, part.data(), std::min(part.size(), limit - text.size()));
      if (count < 0) return std::nullopt;
      if (count == 0) break;
      text.append(part.data(), static_cast<size_t>(count));
    }
    return text;
  }

 private:
  const int descriptor_;
};

std::string_view FileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string FolderOf(uint32_t process_id) { return "/proc/" + std::to_string(process_id); }

std::optional<ProcessStamp> StampOf(uint32_t process_id) {
  const auto stat = File(FolderOf(process_id) + "/stat").Read(kLongestStat);
  return stat ? ReadStamp(*stat) : std::nullopt;
}

/// Calls `use` with each of the parts that `end` ends, until it returns false.
template <typename Use>
void ForEachPart(std::string_view text, char end, Use use) {
  while (!text.empty()) {
    const size_t length = std::min(text.find(end), text.size());
    if (!use(text.substr(0, length))) return;
    text.remove_prefix(std::min(length + 1, text.size()));
  }
}

std::string ProgramOf(const std::string& folder) {
  std::error_code error;
  std::string program = std::filesystem::read_symlink(folder + "/exe", error).string();
  if (error) return {};
  // The kernel marks a file that was replaced, by an update for example. It is the same program.
  constexpr std::string_view kMark = " (deleted)";
  if (program.ends_with(kMark) && !std::filesystem::exists(program, error)) {
    program.resize(program.size() - kMark.size());
  }
  return program;
}

/// The script that a process interprets: its first argument that is no option, when that is a file
/// that names this very interpreter. An editor with a script open interprets nothing.
std::string ScriptOf(const std::string& folder, const ProcessFacts& facts) {
  const auto argument =
      std::find_if(facts.arguments.begin(), facts.arguments.end(),
                   [](const std::string& text) { return !text.starts_with('-'); });
  if (argument == facts.arguments.end() || argument->empty()) return {};
  std::error_code error;
  std::filesystem::path path(*argument);
  if (path.is_relative()) path = folder + "/cwd/" + *argument;
  path = std::filesystem::canonical(path, error);
  if (error || !std::filesystem::is_regular_file(path, error)) return {};
  // Never waits, should it have become a pipe.
  const auto text = File(path.string(), O_NONBLOCK | O_NOCTTY).Read(kLongestFirstLine);
  if (!text) return {};
  const std::string interpreter = InterpreterOf(*text);
  if (interpreter.empty()) return {};
  return interpreter == facts.name || interpreter == FileName(facts.program) ? path.string() : "";
}

/// None when nothing can be known.
std::optional<ProcessFacts> ReadFacts(uint32_t process_id) {
  const std::string folder = FolderOf(process_id);
  ProcessFacts facts;
  facts.program = ProgramOf(folder);
  if (facts.program.empty()) return std::nullopt;
  facts.launched_entry = ReadLaunchedEntry(process_id);
  const auto line = File(folder + "/cmdline").Read(kLongestArguments);
  bool is_first = true;
  ForEachPart(line.value_or(""), '\0', [&](std::string_view part) {
    if (is_first) {
      facts.name = FileName(part);
    } else {
      facts.arguments.emplace_back(part);
    }
    is_first = false;
    return true;
  });
  facts.script = ScriptOf(folder, facts);
  return facts;
}

}  // namespace

std::optional<ProcessStamp> ReadStamp(std::string_view stat) {
  // Start time; bounds of code; bottom of the stack; data, heap, arguments, environment.
  constexpr std::array kFields{22, 26, 27, 28, 45, 46, 47, 48, 49, 50, 51};
  constexpr int kFieldAfterName = 3;
  // The second field is a name in parentheses, which may hold anything.
  const size_t name_end = stat.rfind(") ");
  if (name_end == std::string_view::npos) return std::nullopt;
  ProcessStamp stamp;
  int field = kFieldAfterName;
  bool is_valid = true;
  ForEachPart(stat.substr(name_end + 2), ' ', [&](std::string_view text) {
    if (std::find(kFields.begin(), kFields.end(), field++) == kFields.end()) return true;
    uint64_t number = 0;
    is_valid = std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
    stamp.push_back(number);
    return is_valid;
  });
  if (!is_valid || stamp.size() < kFields.size()) return std::nullopt;
  return stamp;
}

std::string LaunchedEntry(std::string_view environment, uint32_t process_id) {
  constexpr std::string_view kEntry = "GIO_LAUNCHED_DESKTOP_FILE=";
  constexpr std::string_view kProcess = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
  std::string_view entry, process;
  ForEachPart(environment, '\0', [&](std::string_view variable) {
    if (entry.empty() && variable.starts_with(kEntry)) entry = variable.substr(kEntry.size());
    if (process.empty() && variable.starts_with(kProcess)) {
      process = variable.substr(kProcess.size());
    }
    return true;
  });
  if (process != std::to_string(process_id) || entry.size() > kLongestPath) return {};
  return std::string(entry);
}

std::string ReadLaunchedEntry(uint32_t process_id) {
  const auto environment = File(FolderOf(process_id) + "/environ").Read(kLongestEnvironment);
  return environment ? LaunchedEntry(*environment, process_id) : "";
}

std::string InterpreterOf(std::string_view text) {
  if (!text.starts_with("#!")) return {};
  text = text.substr(2, text.find('\n') - 2);
  std::string_view interpreter;
  ForEachPart(text, ' ', [&](std::string_view word) {
    if (word.empty()) return true;
    const bool is_of_env =
        interpreter == "env" && (word.starts_with('-') || word.find('=') != std::string_view::npos);
    if (!is_of_env) interpreter = FileName(word);
    return interpreter == "env";
  });
  return std::string(interpreter);
}

const ProcessFacts* Processes::Find(uint32_t process_id) {
  if (process_id == 0) return nullptr;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    auto stamp = StampOf(process_id);
    if (!stamp) break;
    const auto found = known_.find(process_id);
    if (found != known_.end() && found->second.stamp == *stamp) {
      found->second.last_use = ++uses_;
      return found->second.facts ? &*found->second.facts : nullptr;
    }
    auto facts = ReadFacts(process_id);
    if (StampOf(process_id) != stamp) continue;
    if (found == known_.end()) MakeRoom();
    Known& known = known_[process_id] = {std::move(*stamp), std::move(facts), ++uses_};
    return known.facts ? &*known.facts : nullptr;
  }
  known_.erase(process_id);
  return nullptr;
}

void Processes::MakeRoom() {
  if (known_.size() < kMostKept) return;
  known_.erase(std::min_element(known_.begin(), known_.end(), [](const auto& a, const auto& b) {
    return a.second.last_use < b.second.last_use;
  }));
}

}  // namespace deskhand::platform
