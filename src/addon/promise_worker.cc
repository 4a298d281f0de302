#include "addon/promise_worker.h"

namespace deskhand {

PromiseWorker::PromiseWorker(Napi::Env env, Napi::Promise::Deferred deferred)
    : Napi::AsyncWorker(env), deferred_(deferred) {}

Napi::Value PromiseWorker::Start(PromiseWorker* worker) {
  const Napi::Promise promise = worker->deferred_.Promise();
  worker->Queue();
  return promise;
}

void PromiseWorker::OnOK() { deferred_.Resolve(Result(Env())); }

void PromiseWorker::OnError(const Napi::Error& error) { deferred_.Reject(error.Value()); }

}  // namespace deskhand
