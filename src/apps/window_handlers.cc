#include "apps/window_handlers.h"

#include <algorithm>
#include <vector>

#include "apps/window_records.h"

namespace deskhand {
namespace {

/// Appends the records of some windows, of which it is told all numbers, and the bundle identifier
/// of each. JavaScript makes an object of a literal ten times as fast as Node-API sets its
/// properties one by one, which is most of what a long list costs.
constexpr char kAppendRecords[] = R"(
    (records, numbers, ...bundleIds) => {
      for (let window = 0, at = 0; window < bundleIds.length; ++window) {
        records[records.length] = {
          bundleId: bundleIds[window],
          pid: numbers[at++],
          x: numbers[at++],
          y: numbers[at++],
          w: numbers[at++],
          h: numbers[at++],
          displayId: numbers[at++],
        };
      }
    })";
constexpr size_t kNumbersPerRecord = 6;

// Arguments lie on the stack.
constexpr size_t kMostAtOnce = 100;

/// What an environment keeps from its first list on.
struct EnvironmentData {
  Napi::FunctionReference append_records;
};

/// Empty, with an exception pending, in an environment that is being ended.
Napi::Function RecordAppender(Napi::Env env) {
  auto* data = env.GetInstanceData<EnvironmentData>();
  if (!data) {
    const Napi::Value function = env.RunScript(kAppendRecords);
    if (function.IsEmpty()) return {};
    data = new EnvironmentData{Napi::Persistent(function.As<Napi::Function>())};
    env.SetInstanceData(data);
  }
  return data->append_records.Value();
}

/// False, with an exception pending, in an environment that is being ended.
bool Append(Napi::Array records, Napi::Function append, const WindowRecord* first, size_t count) {
  const Napi::HandleScope scope(records.Env());
  auto numbers = Napi::Float64Array::New(records.Env(), count * kNumbersPerRecord);
  if (numbers.IsEmpty()) return false;
  std::vector<napi_value> arguments{records, numbers};
  double* number = numbers.Data();
  for (const WindowRecord* window = first; window != first + count; ++window) {
    *number++ = window->pid;
    *number++ = window->bounds.x;
    *number++ = window->bounds.y;
    *number++ = window->bounds.width;
    *number++ = window->bounds.height;
    *number++ = window->display_id;
    arguments.push_back(Napi::String::New(records.Env(), window->bundle_id));
  }
  return !append.Call(arguments).IsEmpty();
}

}  // namespace

Napi::Value GetWindowList(const Napi::CallbackInfo& info) {
  const std::vector<WindowRecord> windows = WindowRecords();
  Napi::Array records = Napi::Array::New(info.Env());
  const Napi::Function append = RecordAppender(info.Env());
  if (append.IsEmpty()) return records;
  for (size_t first = 0; first < windows.size(); first += kMostAtOnce) {
    const size_t count = std::min(kMostAtOnce, windows.size() - first);
    if (!Append(records, append, &windows[first], count)) break;
  }
  return records;
}

}  // namespace deskhand
