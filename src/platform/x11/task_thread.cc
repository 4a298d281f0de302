#include "platform/x11/task_thread.h"

#include <system_error>
#include <thread>

#include <pthread.h>

namespace deskhand::platform {

bool TaskThread::Post(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  if (!EnsureStarted()) return false;
  tasks_.push_back(std::move(task));
  changed_.notify_one();
  return true;
}

TaskThread::Timer TaskThread::RunAt(Deadline due, std::function<void()> callback) {
  const std::lock_guard lock(mutex_);
  const Timer timer{due, next_timer_++};
  if (!EnsureStarted()) return timer;
  const bool is_next = timers_.empty() || timer < timers_.begin()->first;
  timers_.emplace(timer, std::move(callback));
  // Deadlines mostly lie behind those already waited for; then the thread need not wake.
  if (is_next) changed_.notify_one();
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
    pthread_setname_np(thread.native_handle(), name_);
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
      changed_.wait(lock);
      continue;
    } else {
      // A copy: the timer may be cancelled, and its node freed, while this waits.
      const Deadline due = timers_.begin()->first.first;
      changed_.wait_until(lock, due);
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

TaskThread& EncoderThread() {
  static TaskThread& thread = *new TaskThread("deskhand-encode");
  return thread;
}

}  // namespace deskhand::platform
