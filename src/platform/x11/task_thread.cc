#include "platform/x11/task_thread.h"

#include <optional>
#include <system_error>
#include <thread>

#include <sched.h>

namespace deskhand::platform {

namespace {

/// The processors that the calling thread may run on; none when the system does not say.
std::optional<cpu_set_t> AllowedProcessors() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof(allowed), &allowed) != 0) return std::nullopt;
  return allowed;
}

}  // namespace

bool TaskThread::Post(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  return Queue(std::move(task));
}

bool TaskThread::PostBeside(std::function<void()> task) {
  // Left alone, the scheduler often wakes a thread where its waker runs, and there it waits.
  const std::optional<cpu_set_t> allowed = AllowedProcessors();
  const int here = sched_getcpu();
  if (!allowed || here < 0 || !CPU_ISSET(here, &*allowed) || CPU_COUNT(&*allowed) < 2) {
    return Post(std::move(task));
  }
  cpu_set_t elsewhere = *allowed;
  CPU_CLR(here, &elsewhere);
  const std::lock_guard lock(mutex_);
  if (!EnsureStarted()) return false;
  // A refusal changes nothing but the time that it takes.
  pthread_setaffinity_np(thread_, sizeof(elsewhere), &elsewhere);
  return Queue([task = std::move(task), allowed = *allowed] {
    sched_setaffinity(0, sizeof(allowed), &allowed);
    task();
  });
}

bool TaskThread::Queue(std::function<void()> task) {
  if (!EnsureStarted()) return false;
  tasks_.push_back(std::move(task));
  changed_.notify_one();
  return true;
}

TaskThread::Timer TaskThread::RunAt(Deadline due, std::function<void()> callback) {
  const std::lock_guard lock(mutex_);
  const Timer timer{due, next_timer_++};
  if (!EnsureStarted()) return timer;
  timers_.emplace(timer, std::move(callback));
  // It mostly waits for an earlier one, though that may have been cancelled.
  if (due < wakes_at_) changed_.notify_one();
  return timer;
}

void TaskThread::Cancel(const Timer& timer) {
  const std::lock_guard lock(mutex_);
  timers_.erase(timer);
}

bool TaskThread::EnsureStarted() {
  if (started_) return true;
  try {
    std::thread thread([this] { Run(); });
    thread_ = thread.native_handle();
    pthread_setname_np(thread_, name_);
    thread.detach();
    started_ = true;
  } catch (const std::system_error&) {
    // Out of threads: tried again with the next task.
  }
  return started_;
}

void TaskThread::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    std::function<void()> next;
    if (!timers_.empty() && timers_.begin()->first.first <= Clock::now()) {
      next = std::move(timers_.extract(timers_.begin()).mapped());
    } else if (!tasks_.empty()) {
      next = std::move(tasks_.front());
      tasks_.pop_front();
    } else if (timers_.empty()) {
      wakes_at_ = Deadline::max();
      changed_.wait(lock);
      wakes_at_ = Deadline::min();
      continue;
    } else {
      // A copy: the timer may be cancelled, and its node freed, while this waits.
      wakes_at_ = timers_.begin()->first.first;
      changed_.wait_until(lock, Deadline(wakes_at_));
      wakes_at_ = Deadline::min();
      continue;
    }
    lock.unlock();
    next();
    next = nullptr;  // what it holds is released without the lock, too
    lock.lock();
  }
}

// Never destroyed: the threads outlive static destruction.
TaskThread& DisplayThread() {
  static TaskThread& thread = *new TaskThread("deskhand-main");
  return thread;
}

TaskThread& CaptureThread() {
  static TaskThread& thread = *new TaskThread("deskhand-shots");
  return thread;
}

TaskThread& ApplicationThread() {
  static TaskThread& thread = *new TaskThread("deskhand-apps");
  return thread;
}

TaskThread& IndexThread() {
  static TaskThread& thread = *new TaskThread("deskhand-index");
  return thread;
}

TaskThread& EncoderThread() {
  static TaskThread& thread = *new TaskThread("deskhand-encode");
  return thread;
}

}  // namespace deskhand::platform
