// The record of every call that reaches a double, the scene that scripts the answers, and the plan
// that makes a call fail. Thread: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"

namespace macdoubles {

/// What a thread is doing while it calls: "js", "worker", "main queue" or "completion". A thread
/// that nobody named is a worker.
class ThreadRole {
 public:
  explicit ThreadRole(const char* role);
  ~ThreadRole();
  ThreadRole(const ThreadRole&) = delete;
  ThreadRole& operator=(const ThreadRole&) = delete;

 private:
  const char* const previous_;
};

struct Call {
  std::string role;  // of the calling thread
  size_t thread;     // a number of its own for each thread, in order of their first calls
  std::string name;  // as in code: "CGMainDisplayID", "-[NSScreen frame]"
  Value::List arguments;
};

/// Forgets everything recorded and scripts what follows.
void BeginScene(Value scene);

/// Scripts what follows differently, in the middle of a test.
void ChangeScene(Value scene);

/// A part of the scene by its top-level name; null when the test left it out.
Value SceneOf(const std::string& name);

/// Scripts one part of the scene differently: what a call has changed in the world.
void ChangeInScene(const std::string& name, Value value);

/// A message, which a name in brackets is, is recorded as a violation too when the caller has no
/// autorelease pool open: what the framework autoreleases on its way would stay.
void Record(std::string name, Value::List arguments = {});

/// Records a call whose documented answer may be nil, NULL or an error. True when it is to fail
/// now: because the scene lists its name under "failing", or because its turn has come in the plan.
bool RecordFailable(std::string name, Value::List arguments = {});

/// Makes the `ordinal`th failable call from the start of the scene fail, counted from 1.
void FailCall(size_t ordinal);

/// The failable calls so far, in order.
std::vector<std::string> FailableCalls();

std::vector<Call> Calls();

/// Something that no correct caller does. Never fatal: the end of the test reports it.
void Violate(std::string what);
std::vector<std::string> Violations();

}  // namespace macdoubles
