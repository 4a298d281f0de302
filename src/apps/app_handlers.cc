#include "apps/app_handlers.h"

#include <utility>
#include <vector>

#include "addon/arguments.h"
#include "addon/promise_worker.h"
#include "apps/app_control.h"
#include "apps/app_names.h"
#include "apps/app_records.h"
#include "apps/hit_test.h"
#include "apps/installed_apps.h"
#include "platform/call_scope.h"

namespace deskhand {
namespace {

Napi::Object AppInfoToJS(Napi::Env env, const AppInfo& app) {
  Napi::Object object = Napi::Object::New(env);
  object.Set("bundleId", app.bundle_id);
  object.Set("displayName", app.display_name);
  object.Set("pid", app.pid);
  return object;
}

Napi::Value AppInfoOrNull(Napi::Env env, const std::optional<AppInfo>& app) {
  return app ? AppInfoToJS(env, *app) : env.Null();
}

class ListInstalledAppsWorker final : public PromiseWorker {
 public:
  ListInstalledAppsWorker(Napi::Env env, Napi::Promise::Deferred deferred)
      : PromiseWorker(env, deferred) {}

 protected:
  void Execute() override {
    const platform::CallScope scope;
    entries_ = InstalledApps();
  }

  Napi::Value Result(Napi::Env env) const override {
    Napi::Array array = Napi::Array::New(env);
    uint32_t index = 0;
    for (const InstalledAppEntry& entry : entries_) {
      const Napi::HandleScope entry_scope(env);
      Napi::Object object = Napi::Object::New(env);
      object.Set("bundleId", entry.bundle_id);
      object.Set("displayName", entry.display_name);
      object.Set("path", entry.path);
      array.Set(index++, object);
    }
    return array;
  }

 private:
  std::vector<InstalledAppEntry> entries_;
};

class OpenAppWorker final : public PromiseWorker {
 public:
  OpenAppWorker(Napi::Env env, Napi::Promise::Deferred deferred, std::string bundle_id)
      : PromiseWorker(env, deferred), bundle_id_(std::move(bundle_id)) {}

 protected:
  void Execute() override {
    const platform::CallScope scope;
    is_open_ = OpenByBundleId(bundle_id_);
  }

  Napi::Value Result(Napi::Env env) const override { return Napi::Boolean::New(env, is_open_); }

 private:
  const std::string bundle_id_;
  bool is_open_ = false;
};

/// Calls `change` with the strings of an array; a first argument that is none is ignored.
Napi::Value ChangeApps(const Napi::CallbackInfo& info,
                       void (*change)(const std::vector<std::string>&)) {
  if (info.Length() >= 1 && info[0].IsArray()) {
    if (const auto bundle_ids = ReadStrings(info[0].As<Napi::Array>())) change(*bundle_ids);
  }
  return info.Env().Undefined();
}

}  // namespace

Napi::Value ListRunningApps(const Napi::CallbackInfo& info) {
  Napi::Array array = Napi::Array::New(info.Env());
  uint32_t index = 0;
  for (const AppInfo& app : RunningApps()) array.Set(index++, AppInfoToJS(info.Env(), app));
  return array;
}

Napi::Value GetFrontmostApp(const Napi::CallbackInfo& info) {
  return AppInfoOrNull(info.Env(), FrontmostApp());
}

Napi::Value ListInstalledApps(const Napi::CallbackInfo& info) {
  return PromiseWorker::Start(
      new ListInstalledAppsWorker(info.Env(), Napi::Promise::Deferred::New(info.Env())));
}

Napi::Value ResolveAppName(const Napi::CallbackInfo& info) {
  const Napi::Env env = info.Env();
  if (!IsStringAt(info, 0)) return env.Null();
  const auto app = ResolveApp(ReadUtf8(info[0]));
  if (!app) return env.Null();
  Napi::Object object = Napi::Object::New(env);
  object.Set("bundleId", app->bundle_id);
  object.Set("displayName", app->display_name);
  return object;
}

Napi::Value AppUnderPoint(const Napi::CallbackInfo& info) {
  const Napi::Env env = info.Env();
  if (info.Length() < 2 || !AreNumbers(info, 0, 1)) return env.Null();
  return AppInfoOrNull(env, AppAt({ReadDouble(info[0]), ReadDouble(info[1])}));
}

Napi::Value OpenApp(const Napi::CallbackInfo& info) {
  const Napi::Env env = info.Env();
  const auto deferred = Napi::Promise::Deferred::New(env);
  if (!IsStringAt(info, 0)) {
    deferred.Resolve(Napi::Boolean::New(env, false));
    return deferred.Promise();
  }
  return PromiseWorker::Start(new OpenAppWorker(env, deferred, ReadUtf8(info[0])));
}

Napi::Value HideApps(const Napi::CallbackInfo& info) { return ChangeApps(info, HideByBundleId); }

Napi::Value UnhideApps(const Napi::CallbackInfo& info) {
  return ChangeApps(info, UnhideByBundleId);
}

}  // namespace deskhand
