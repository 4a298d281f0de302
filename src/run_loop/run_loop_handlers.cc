// An addon of its own: services the main queue from the event loop of a plain Node.js process,
// where nobody else does, while promises of the main addon are pending. JavaScript has the timer;
// here is what it needs: start(file of the main addon, changed), service(), stop().
// Thread: the JavaScript thread, but for what says otherwise.
#include <cstddef>
#include <memory>
#include <string>

#include <napi.h>

#include "addon/promise_watch.h"
#include "platform/call_scope.h"
#include "platform/run_loop.h"

namespace deskhand {
namespace {

/// Tells the JavaScript thread whether promises are pending, until it is destroyed or the
/// environment ends.
class PromiseWatcher {
 public:
  PromiseWatcher(WatchPromises watch, UnwatchPromises unwatch, const Napi::Function& changed)
      : env_(changed.Env()),
        unwatch_(unwatch),
        changed_(Messenger::New(env_, changed, "pending promises", 0, 1)),
        // After what it ends was made: hooks are called in reverse order.
        cleanup_(env_.AddCleanupHook(&PromiseWatcher::End, this)) {
    // Who only watches keeps no process alive.
    changed_.Unref(env_);
    watch(&PromiseWatcher::Changed, this);
  }

  ~PromiseWatcher() {
    if (has_ended_) return;
    cleanup_.Remove(env_);
    End(this);
  }

  PromiseWatcher(const PromiseWatcher&) = delete;
  PromiseWatcher& operator=(const PromiseWatcher&) = delete;

 private:
  /// Data stands for true, none for false: nothing is to be freed when a message is dropped.
  static void Deliver(Napi::Env env, Napi::Function changed, std::nullptr_t*, void* data) {
    // No environment: the messenger was aborted.
    if (env) changed.Call({Napi::Boolean::New(env, data != nullptr)});
  }

  using Messenger = Napi::TypedThreadSafeFunction<std::nullptr_t, void, &PromiseWatcher::Deliver>;
  using CleanupHook = Napi::Env::CleanupHook<void (*)(PromiseWatcher*), PromiseWatcher>;

  static void End(PromiseWatcher* watcher) {
    watcher->has_ended_ = true;
    watcher->unwatch_(&PromiseWatcher::Changed, watcher);
    watcher->changed_.Abort();
  }

  /// Thread: any.
  static void Changed(void* data, bool is_any_pending) {
    static_cast<PromiseWatcher*>(data)->changed_.NonBlockingCall(is_any_pending ? data : nullptr);
  }

  Napi::Env env_;
  const UnwatchPromises unwatch_;
  Messenger changed_;
  CleanupHook cleanup_;
  bool has_ended_ = false;
};

/// What one environment has: its watcher, from start() to stop().
struct Instance {
  std::unique_ptr<PromiseWatcher> watcher;
};

Instance& InstanceOf(Napi::Env env) { return *env.GetInstanceData<Instance>(); }

Napi::Value Throw(Napi::Env env, const std::string& message) {
  Napi::Error::New(env, message).ThrowAsJavaScriptException();
  return env.Undefined();
}

template <class Function>
Function Find(const std::string& file, const char* name) {
  return reinterpret_cast<Function>(platform::FindInLoadedLibrary(file, name));
}

Napi::Value Start(const Napi::CallbackInfo& info) {
  const Napi::Env env = info.Env();
  if (!info[0].IsString() || !info[1].IsFunction()) {
    return Throw(env, "start(addonFile, changed): wrong arguments");
  }
  if (!platform::IsMainThread()) {
    return Throw(env, "The run loop is the main thread's: start it there, not in a worker thread");
  }
  const std::string file = info[0].As<Napi::String>();
  const auto watch = Find<WatchPromises>(file, kWatchPromises);
  const auto unwatch = Find<UnwatchPromises>(file, kUnwatchPromises);
  if (!watch || !unwatch) {
    return Throw(env, file + " is not loaded, or of another version than the run loop");
  }
  const platform::CallScope scope;
  platform::ConnectToWindowServer();
  InstanceOf(env).watcher =
      std::make_unique<PromiseWatcher>(watch, unwatch, info[1].As<Napi::Function>());
  return env.Undefined();
}

Napi::Value Service(const Napi::CallbackInfo& info) {
  platform::ServiceMainQueue();
  return info.Env().Undefined();
}

Napi::Value Stop(const Napi::CallbackInfo& info) {
  InstanceOf(info.Env()).watcher.reset();
  return info.Env().Undefined();
}

}  // namespace
}  // namespace deskhand

extern "C" {

NAPI_MODULE_EXPORT int32_t node_api_module_get_api_version_v1() { return 8; }

NAPI_MODULE_EXPORT napi_value napi_register_module_v1(napi_env raw_env, napi_value raw_exports) {
  const Napi::Env env(raw_env);
  env.SetInstanceData(new deskhand::Instance);
  Napi::Object exports(raw_env, raw_exports);
  exports.Set("start", Napi::Function::New(env, deskhand::Start, "start"));
  exports.Set("service", Napi::Function::New(env, deskhand::Service, "service"));
  exports.Set("stop", Napi::Function::New(env, deskhand::Stop, "stop"));
  return exports;
}

}  // extern "C"
