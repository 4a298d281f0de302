// The base of the functions that return a promise.
// Threads: made, settled and destroyed on the JavaScript thread; Execute() on a worker-pool thread.
#pragma once

#include <napi.h>

#include "addon/pending_promises.h"

namespace deskhand {

/// Runs Execute() off the JavaScript thread and settles its promise exactly once: with Result()
/// when Execute() set no error, else with an Error that carries the text given to SetError().
class PromiseWorker : public Napi::AsyncWorker {
 public:
  /// Queues the worker, which deletes itself after settling. Returns the promise.
  static Napi::Value Start(PromiseWorker* worker);

 protected:
  PromiseWorker(Napi::Env env, Napi::Promise::Deferred deferred);

  /// The value to resolve with, made from what Execute() left. Thread: the JavaScript thread.
  virtual Napi::Value Result(Napi::Env env) const = 0;

  void OnOK() final;
  void OnError(const Napi::Error& error) final;

 private:
  Napi::Promise::Deferred deferred_;
  // Whoever destroys the worker, its promise is not waited for any more.
  const PendingPromise pending_;
};

}  // namespace deskhand
