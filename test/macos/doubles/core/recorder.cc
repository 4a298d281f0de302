#include "core/recorder.h"

#include <atomic>
#include <mutex>
#include <utility>

#include "counters.h"

namespace macdoubles {
namespace {

struct State {
  std::mutex mutex;
  Value scene;
  std::vector<Call> calls;
  std::vector<std::string> failable;
  size_t call_to_fail = 0;
  std::vector<std::string> violations;
};

// Never destroyed: framework threads may outlive main().
State& TheState() {
  static State& state = *new State;
  return state;
}

thread_local const char* thread_role = "worker";

size_t ThreadNumber() {
  static std::atomic<size_t> last{0};
  static thread_local const size_t number = ++last;
  return number;
}

bool IsMessage(const std::string& name) { return name.find('[') != std::string::npos; }

void Append(State& state, std::string name, Value::List arguments) {
  if (IsMessage(name) && OpenPoolsOfThread() == 0) {
    state.violations.push_back(name + " without an autorelease pool");
  }
  state.calls.push_back({thread_role, ThreadNumber(), std::move(name), std::move(arguments)});
}

bool IsListed(const Value& names, const std::string& name) {
  for (const Value& listed : names.Items()) {
    if (listed.Text() == name) return true;
  }
  return false;
}

}  // namespace

ThreadRole::ThreadRole(const char* role) : previous_(std::exchange(thread_role, role)) {}
ThreadRole::~ThreadRole() { thread_role = previous_; }

void BeginScene(Value scene) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.scene = std::move(scene);
  state.calls.clear();
  state.failable.clear();
  state.call_to_fail = 0;
  state.violations.clear();
}

void ChangeScene(Value scene) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.scene = std::move(scene);
}

Value SceneOf(const std::string& name) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.scene[name];
}

void ChangeInScene(const std::string& name, Value value) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.scene.Set(name, std::move(value));
}

void Record(std::string name, Value::List arguments) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Append(state, std::move(name), std::move(arguments));
}

bool RecordFailable(std::string name, Value::List arguments) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failable.push_back(name);
  const bool fails =
      state.failable.size() == state.call_to_fail || IsListed(state.scene["failing"], name);
  Append(state, std::move(name), std::move(arguments));
  return fails;
}

void FailCall(size_t ordinal) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.call_to_fail = ordinal;
}

std::vector<std::string> FailableCalls() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.failable;
}

std::vector<Call> Calls() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.calls;
}

void Violate(std::string what) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.violations.push_back(std::move(what));
}

std::vector<std::string> Violations() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.violations;
}

}  // namespace macdoubles
