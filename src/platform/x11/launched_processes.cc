#include "platform/x11/launched_processes.h"

#include <charconv>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include <signal.h>

#include "platform/x11/processes.h"

namespace deskhand::platform {
namespace {

// Until then a process may still be what its parent was, about to run another program.
constexpr std::chrono::seconds kYoung{2};
// Numbers of processes come again, after so many others that this is soon enough to notice.
constexpr std::chrono::minutes kReadingPeriod{1};

std::optional<int32_t> ProcessNumber(const std::string& name) {
  int32_t number = 0;
  const char* const end = name.data() + name.size();
  const auto [rest, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::vector<int32_t> AllProcesses() {
  std::vector<int32_t> processes;
  std::error_code error;
  std::filesystem::directory_iterator item("/proc", error);
  for (; !error && item != std::filesystem::directory_iterator(); item.increment(error)) {
    if (const auto number = ProcessNumber(item->path().filename().string())) {
      processes.push_back(*number);
    }
  }
  return processes;
}

bool IsAlive(int32_t process) { return kill(process, 0) == 0; }

ApplicationDescription Describe(int32_t process) {
  return ApplicationDirectory::Get().Describe({.process_id = static_cast<uint32_t>(process)});
}

}  // namespace

// Never destroyed: threads outlive static destruction.
LaunchedProcesses& LaunchedProcesses::Get() {
  static LaunchedProcesses& processes = *new LaunchedProcesses;
  return processes;
}

std::vector<LaunchedProcess> LaunchedProcesses::Running(uint64_t generation) {
  const std::lock_guard lock(mutex_);
  const Deadline now = Clock::now();
  std::string line;
  std::getline(std::ifstream("/proc/loadavg"), line);
  std::string latest = LatestProcess(line);
  if (now - last_reading_ > kReadingPeriod) seen_.clear();
  if (seen_.empty() || latest.empty() || latest != latest_ || generation != generation_ ||
      has_young_) {
    generation_ = generation;
    latest_ = std::move(latest);
    Scan(now);
  }
  std::vector<LaunchedProcess> running;
  for (const auto& [process, seen] : seen_) {
    if (seen.is_launched && IsAlive(process)) running.push_back({process, seen.description});
  }
  return running;
}

void LaunchedProcesses::Scan(Deadline now) {
  const bool is_first = seen_.empty();
  if (is_first) last_reading_ = now;
  std::map<int32_t, Seen> seen;
  has_young_ = false;
  for (const int32_t process : AllProcesses()) {
    const auto known = seen_.find(process);
    Seen entry;
    if (known != seen_.end()) {
      entry.first_seen = known->second.first_seen;
    } else if (!is_first) {
      entry.first_seen = now;
    }
    const bool is_young = entry.first_seen && now - *entry.first_seen < kYoung;
    if (known != seen_.end() && !is_young && !known->second.is_launched) {
      entry = known->second;
    } else {
      entry.is_launched = !ReadLaunchedEntry(static_cast<uint32_t>(process)).empty();
      if (entry.is_launched) entry.description = Describe(process);
    }
    has_young_ |= is_young;
    seen.emplace(process, std::move(entry));
  }
  seen_ = std::move(seen);
}

std::string LatestProcess(std::string_view load_average) {
  const size_t space = load_average.rfind(' ');
  return space == std::string_view::npos ? "" : std::string(load_average.substr(space + 1));
}

}  // namespace deskhand::platform
