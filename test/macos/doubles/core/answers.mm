#include "core/answers.h"

#include <mutex>
#include <utility>
#include <vector>

#import <dispatch/dispatch.h>

#include "core/framework_threads.h"
#include "core/recorder.h"

namespace macdoubles {
namespace {

struct KeptAnswer {
  std::string subject;
  bool is_held;  // else it never comes
  std::function<void()> deliver;
};

struct State {
  std::mutex mutex;
  std::vector<KeptAnswer> kept;
};

State& TheState() {
  static State& state = *new State;
  return state;
}

void Keep(KeptAnswer answer) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.kept.push_back(std::move(answer));
}

}  // namespace

void Answer(const std::string& subject, std::function<void()> deliver) {
  const Value script = SceneOf(subject);
  const int times = static_cast<int>(script["times"].Number(1));
  const auto repeated = [times, deliver = std::move(deliver)] {
    for (int time = 0; time < times; ++time) deliver();
  };
  const std::string when = script["answer"].Text("thread");
  if (when == "thread") {
    RunOnFrameworkThread(repeated);
  } else if (when == "inline") {
    repeated();
  } else if (when == "main queue") {
    dispatch_async(dispatch_get_main_queue(), ^{
      repeated();
    });
  } else if (when == "held" || when == "never") {
    Keep({subject, when == "held", repeated});
  } else {
    Violate("the scene says \"" + when + "\" of when to answer for " + subject);
  }
}

size_t DeliverHeld(const std::string& subject) {
  std::vector<KeptAnswer> due;
  {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    std::vector<KeptAnswer> remaining;
    for (KeptAnswer& answer : state.kept) {
      const bool is_due = answer.is_held && (subject.empty() || answer.subject == subject);
      (is_due ? due : remaining).push_back(std::move(answer));
    }
    state.kept = std::move(remaining);
  }
  for (KeptAnswer& answer : due) RunOnFrameworkThread(std::move(answer.deliver));
  return due.size();
}

size_t HeldAnswers() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  size_t held = 0;
  for (const KeptAnswer& answer : state.kept) held += answer.is_held;
  return held;
}

void DropAnswers() {
  std::vector<KeptAnswer> dropped;
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  dropped.swap(state.kept);
}

}  // namespace macdoubles
