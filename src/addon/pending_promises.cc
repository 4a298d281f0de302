#include "addon/pending_promises.h"

#include <cstddef>
#include <mutex>
#include <vector>

namespace deskhand {
namespace {

struct Watcher {
  PromisesChanged changed;
  void* data;
  bool operator==(const Watcher&) const = default;
};

struct State {
  // Held while watchers are told, so that each hears of the changes in their order, and of none
  // after it was removed.
  std::mutex mutex;
  size_t pending = 0;
  std::vector<Watcher> watchers;
};

// Never destroyed: worker threads may outlive static destruction.
State& TheState() {
  static State& state = *new State;
  return state;
}

void Tell(const State& state) {
  for (const auto& [changed, data] : state.watchers) changed(data, state.pending > 0);
}

}  // namespace

PendingPromise::PendingPromise() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (++state.pending == 1) Tell(state);
}

PendingPromise::~PendingPromise() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (--state.pending == 0) Tell(state);
}

void WatchPendingPromises(PromisesChanged changed, void* data) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.watchers.push_back({changed, data});
  if (state.pending > 0) changed(data, true);
}

void UnwatchPendingPromises(PromisesChanged changed, void* data) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  std::erase(state.watchers, Watcher{changed, data});
}

}  // namespace deskhand
