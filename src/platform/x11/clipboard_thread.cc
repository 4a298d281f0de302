#include "platform/x11/clipboard_thread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "platform/main_queue.h"
#include "platform/x11/clipboard_owner.h"
#include "platform/x11/session.h"

namespace deskhand::platform {
namespace {

// A server that takes in nothing for so long is given up, and the text with it.
constexpr std::chrono::seconds kLongestTurn{2};
// A task gives up before its session does, which would break the connection, and lose the text that
// is there.
constexpr std::chrono::milliseconds kServerPatience{50};
// A clipboard manager that is slower than that is not waited for when the process ends.
constexpr std::chrono::seconds kLongestHandover{1};

/// Runs tasks between the events of the clipboard's connection.
class ClipboardThread {
 public:
  /// False, and the task is dropped, when the system has no thread or file descriptor left.
  bool Post(std::function<void()> task);

 private:
  bool EnsureStarted();
  void Run();
  void RunTasks();
  void Wait() const;

  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  bool has_started_ = false;
  int wake_up_ = -1;
};

bool ClipboardThread::Post(std::function<void()> task) {
  const std::lock_guard lock(mutex_);
  if (!EnsureStarted()) return false;
  tasks_.push_back(std::move(task));
  eventfd_write(wake_up_, 1);
  return true;
}

bool ClipboardThread::EnsureStarted() {
  if (has_started_) return true;
  if (wake_up_ < 0) wake_up_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wake_up_ < 0) return false;
  try {
    std::thread thread([this] { Run(); });
    pthread_setname_np(thread.native_handle(), "deskhand-clip");
    thread.detach();
    has_started_ = true;
  } catch (const std::system_error&) {
    // Out of threads: tried again with the next task.
  }
  return has_started_;
}

void ClipboardThread::Run() {
  for (;;) {
    // Tasks are to see what others did before they were posted, and leave events behind.
    ServeChannel(ClipboardChannel(), Clock::now() + kLongestTurn);
    RunTasks();
    ServeChannel(ClipboardChannel(), Clock::now() + kLongestTurn);
    Wait();
  }
}

void ClipboardThread::RunTasks() {
  std::deque<std::function<void()>> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
  }
  for (const auto& task : tasks) task();
}

void ClipboardThread::Wait() const {
  const Link* const link = ClipboardChannel().link.get();
  pollfd files[] = {{wake_up_, POLLIN, 0},
                    {link ? xcb_get_file_descriptor(link->connection) : -1, POLLIN, 0}};
  const auto due = link && link->clipboard ? link->clipboard->Expire() : std::nullopt;
  int milliseconds = -1;
  if (due) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - Clock::now());
    milliseconds = static_cast<int>(std::max<int64_t>(left.count(), 0));
  }
  poll(files, 2, milliseconds);
  eventfd_t count = 0;
  eventfd_read(wake_up_, &count);
}

// Never destroyed: it outlives static destruction.
ClipboardThread& Thread() {
  static ClipboardThread& thread = *new ClipboardThread;
  return thread;
}

/// Whether a text may be ours. What it says is exact on the clipboard's thread alone.
std::atomic<bool>& MayOwn() {
  static std::atomic<bool>& may_own = *new std::atomic<bool>;
  return may_own;
}

/// The owner on the clipboard's connection, where there is one.
ClipboardOwner* Owner() {
  const Link* const link = ClipboardChannel().link.get();
  return link ? link->clipboard.get() : nullptr;
}

bool Take(const SharedText& text, Deadline deadline) {
  const Deadline end_of_wait = deadline - kServerPatience;
  if (Clock::now() > end_of_wait) return false;  // the task before it has used up the time
  const Session session(ClipboardChannel(), deadline);
  if (!session) return false;
  auto& owner = session.link().clipboard;
  if (!owner) owner = ClipboardOwner::Start(session);
  return owner && owner->Take(text, end_of_wait);
}

/// Runs on the thread that ends the process, while all others go on.
void HandOverAtExit(pid_t process) {
  // A child that was forked has no such thread, and the text is not its.
  if (getpid() != process || !MayOwn()) return;
  const Deadline deadline = Clock::now() + kLongestHandover;
  const Semaphore handed_over;
  const bool is_posted = Thread().Post([deadline, handed_over] {
    ClipboardOwner* const owner = Owner();
    if (!owner) return handed_over.Signal();
    const SocketDeadline bound(ClipboardChannel().link->connection, deadline);
    owner->HandOver(deadline, [handed_over] { handed_over.Signal(); });
  });
  if (is_posted) handed_over.Wait(kLongestHandover);
}

void HandOverWhenTheProcessEnds() {
  static const pid_t process = getpid();
  static const int registered = std::atexit([] { HandOverAtExit(process); });
  static_cast<void>(registered);  // without it the text ends with the process
}

}  // namespace

bool OwnClipboard(std::string text, Deadline deadline) {
  struct Outcome {
    std::atomic<bool> is_taken = false;
    Semaphore done;
  };
  const auto outcome = std::make_shared<Outcome>();
  const auto shared = std::make_shared<const std::string>(std::move(text));
  HandOverWhenTheProcessEnds();
  const bool is_posted = Thread().Post([outcome, shared, deadline] {
    outcome->is_taken = Take(shared, deadline);
    if (outcome->is_taken) MayOwn() = true;
    outcome->done.Signal();
  });
  return is_posted && outcome->done.Wait(deadline - Clock::now()) && outcome->is_taken;
}

SharedText OwnClipboardText(Deadline deadline) {
  if (!MayOwn()) return nullptr;
  struct Outcome {
    SharedText text;
    Semaphore done;
  };
  const auto outcome = std::make_shared<Outcome>();
  const bool is_posted = Thread().Post([outcome] {
    const ClipboardOwner* const owner = Owner();
    if (owner) outcome->text = owner->text();
    if (!outcome->text) MayOwn() = false;
    outcome->done.Signal();
  });
  if (!is_posted || !outcome->done.Wait(deadline - Clock::now())) return nullptr;
  return outcome->text;
}

}  // namespace deskhand::platform
