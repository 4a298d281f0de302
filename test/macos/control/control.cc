// doubles.node: how a test scripts the doubles and reads what they saw. Loaded beside the addon, by
// the thread that plays the main thread; the addon itself has no hooks.
// Thread: the JavaScript thread that loaded it.
#include <cstdint>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <napi.h>

#include "core/answers.h"
#include "core/classes.h"
#include "core/framework_threads.h"
#include "core/live_objects.h"
#include "core/recorder.h"
#include "counters.h"
#include "main_queue.h"
#include "notifications.h"
#include "values.h"

namespace macdoubles {
namespace {

// What was there when the scene began is not of its making.
struct Baseline {
  long pools = 0;
  long blocks = 0;
};

Baseline& TheBaseline() {
  static Baseline baseline;
  return baseline;
}

Napi::Value Begin(const Napi::CallbackInfo& info) {
  BeginScene(FromJS(info[0]));
  BeginCounting();
  TheBaseline() = {open_pools, live_blocks};
  return info.Env().Undefined();
}

Napi::Value Change(const Napi::CallbackInfo& info) {
  ChangeScene(FromJS(info[0]));
  return info.Env().Undefined();
}

Napi::Value GetCalls(const Napi::CallbackInfo& info) {
  const Napi::Env env = info.Env();
  Napi::Array list = Napi::Array::New(env);
  for (Call& call : Calls()) {
    Napi::Object entry = Napi::Object::New(env);
    entry.Set("role", call.role);
    entry.Set("thread", static_cast<double>(call.thread));
    Value::List words{call.name};
    for (Value& argument : call.arguments) words.push_back(std::move(argument));
    entry.Set("call", ToJS(env, words));
    list.Set(list.Length(), entry);
  }
  return list;
}

Napi::Value GetViolations(const Napi::CallbackInfo& info) {
  return ToJS(info.Env(), ListOf(Violations()));
}

Napi::Value GetLeftovers(const Napi::CallbackInfo& info) {
  Value::Object alive;
  for (const auto& [label, count] : LiveObjects()) alive[label] = count;
  return ToJS(info.Env(), Value::Object{
                              {"objects", alive},
                              {"blocks", live_blocks - TheBaseline().blocks},
                              {"pools", open_pools - TheBaseline().pools},
                              {"frameworkThreads", BusyFrameworkThreads()},
                              {"mainQueueBlocks", WaitingMainQueueBlocks()},
                              {"heldAnswers", HeldAnswers()},
                          });
}

Napi::Value Service(const Napi::CallbackInfo& info) {
  return Napi::Number::New(info.Env(), static_cast<double>(ServiceMainQueue()));
}

Napi::Value Discard(const Napi::CallbackInfo& info) {
  DiscardMainQueue();
  DropAnswers();
  DropObservers();
  return info.Env().Undefined();
}

Napi::Value Deliver(const Napi::CallbackInfo& info) {
  const size_t delivered = DeliverHeld(FromJS(info[0]).Text());
  return Napi::Number::New(info.Env(), static_cast<double>(delivered));
}

Napi::Value Fail(const Napi::CallbackInfo& info) {
  FailCall(static_cast<size_t>(FromJS(info[0]).Number()));
  return info.Env().Undefined();
}

Napi::Value GetFailableCalls(const Napi::CallbackInfo& info) {
  return ToJS(info.Env(), ListOf(FailableCalls()));
}

// Calls a function without parameters that a loaded library exports: the one of an addon's entry
// points that a host calls before it has any JavaScript to run.
Napi::Value CallExport(const Napi::CallbackInfo& info) {
  void* const library = dlopen(FromJS(info[0]).Text().c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (!library) return info.Env().Null();
  void* const symbol = dlsym(library, FromJS(info[1]).Text().c_str());
  const Napi::Value result =
      symbol ? Napi::Number::New(info.Env(), reinterpret_cast<int32_t (*)()>(symbol)())
             : info.Env().Null();
  dlclose(library);
  return result;
}

/// Has the main queue serviced by this environment's thread for as long as the environment lives.
void PlayMainThread(Napi::Env env) {
  const auto ignore = [](const Napi::CallbackInfo&) {};
  auto wakeups = Napi::ThreadSafeFunction::New(env, Napi::Function::New(env, ignore), "main queue",
                                               0, 1, [](Napi::Env) { SetMainQueueWake(nullptr); });
  // An idle main queue keeps no process alive.
  wakeups.Unref(env);
  SetMainQueueWake([wakeups] {
    wakeups.NonBlockingCall([](Napi::Env, Napi::Function) { ServiceMainQueue(); });
  });
}

Napi::Object Init(Napi::Env env, Napi::Object exports) {
  // Never destroyed: this thread plays JavaScript's part from now on.
  static const ThreadRole& role = *new ThreadRole("js");
  static_cast<void>(role);
  PrepareClasses();
  PlayMainThread(env);
  exports.Set("begin", Napi::Function::New(env, Begin));
  exports.Set("change", Napi::Function::New(env, Change));
  exports.Set("calls", Napi::Function::New(env, GetCalls));
  exports.Set("violations", Napi::Function::New(env, GetViolations));
  exports.Set("leftovers", Napi::Function::New(env, GetLeftovers));
  exports.Set("serviceMainQueue", Napi::Function::New(env, Service));
  exports.Set("discard", Napi::Function::New(env, Discard));
  exports.Set("deliver", Napi::Function::New(env, Deliver));
  exports.Set("failCall", Napi::Function::New(env, Fail));
  exports.Set("failableCalls", Napi::Function::New(env, GetFailableCalls));
  exports.Set("callExport", Napi::Function::New(env, CallExport));
  return exports;
}

NODE_API_MODULE(doubles, Init)

}  // namespace
}  // namespace macdoubles
