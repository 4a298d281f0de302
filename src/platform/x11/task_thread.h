// A thread that runs tasks in order and timers when they are due.
// Threads: every member from any thread; tasks and timers run on the thread itself and must not
// block it for long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

#include <pthread.h>

namespace deskhand::platform {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

/// Starts with its first task or timer, never at load, and lives as long as the process.
class TaskThread {
 public:
  using Timer = std::pair<Deadline, uint64_t>;

  /// `name` is what debuggers and `ps -T` show, 15 characters at most.
  explicit TaskThread(const char* name) : name_(name) {}
  TaskThread(const TaskThread&) = delete;
  TaskThread& operator=(const TaskThread&) = delete;

  /// False, and the task is dropped, when the system cannot start another thread.
  bool Post(std::function<void()> task);
  /// The same, for a task that is to run beside what its caller does next: it is woken on another
  /// processor than the caller's, where the process may use another. What the thread was allowed
  /// otherwise it is allowed again as soon as it runs.
  bool PostBeside(std::function<void()> task);
  Timer RunAt(Deadline due, std::function<void()> callback);
  /// A callback that has begun is not waited for.
  void Cancel(const Timer& timer);

 private:
  bool Queue(std::function<void()> task);  // with mutex_ held, as the next one
  bool EnsureStarted();
  void Run();

  const char* const name_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool started_ = false;
  pthread_t thread_ = {};  // once started
  uint64_t next_timer_ = 0;
  Deadline wakes_at_ = Deadline::min();  // by itself; while it runs it looks again anyway
  std::deque<std::function<void()>> tasks_;
  std::map<Timer, std::function<void()>> timers_;
};

/// Plays the part of the process's main queue, and ends waits that last too long.
TaskThread& DisplayThread();

/// Takes and encodes screenshots, one after the other.
TaskThread& CaptureThread();

/// Opens applications, and attends to what is watched for the JavaScript threads.
TaskThread& ApplicationThread();

/// Reads what is installed.
TaskThread& IndexThread();

/// Encodes parts of a screenshot beside the capture thread.
TaskThread& EncoderThread();

}  // namespace deskhand::platform
