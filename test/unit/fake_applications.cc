#include "unit/fake_applications.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <utility>

#include "platform/clipboard.h"

namespace deskhand::platform {
namespace {

void Record(const std::string& call) { FakeApplications::Get().calls.push_back(call); }

std::string PidOf(const RunningApplication& application) { return std::to_string(application.pid); }

template <class T>
std::optional<T> Find(const std::map<std::string, T>& values, const std::string& key) {
  const auto found = values.find(key);
  return found == values.end() ? std::nullopt : std::optional<T>(found->second);
}

template <class T>
std::shared_ptr<const T> Share(const std::optional<T>& value) {
  return value ? std::make_shared<const T>(*value) : nullptr;
}

}  // namespace

FakeApplications& FakeApplications::Get() {
  static FakeApplications applications;
  return applications;
}

void FakeApplications::Reset() { Get() = FakeApplications(); }

std::vector<RunningApplicationRef> RunningApplications() {
  std::vector<RunningApplicationRef> applications;
  for (const auto& application : FakeApplications::Get().running) {
    applications.push_back(std::make_shared<const RunningApplication>(application));
  }
  return applications;
}

RunningApplicationRef FrontmostApplication() { return Share(FakeApplications::Get().frontmost); }

bool IsRegular(const RunningApplication& application) { return application.is_regular; }
std::optional<std::string> BundleId(const RunningApplication& application) {
  Record("bundle id of " + PidOf(application));
  return application.bundle_id;
}
std::optional<std::string> LocalizedName(const RunningApplication& application) {
  return application.name;
}
int32_t ProcessId(const RunningApplication& application) { return application.pid; }
bool IsHidden(const RunningApplication& application) { return application.is_hidden; }
void Hide(const RunningApplication& application) { Record("hide " + PidOf(application)); }
void Unhide(const RunningApplication& application) { Record("unhide " + PidOf(application)); }
void Activate(const RunningApplication& application) { Record("activate " + PidOf(application)); }
int32_t OwnProcessId() { return FakeApplications::Get().own_pid; }

void OpenApplication(const ApplicationLocation& location, OpenHandler handler) {
  Record("open " + location.path.value_or("nowhere"));
  for (const OpenAnswer& answer : FakeApplications::Get().open_answers) {
    handler(Share(answer.application), answer.error);
  }
}

ApplicationLocationRef LocationOfApplication(const std::string& bundle_id) {
  Record("location of " + bundle_id);
  return Share(Find(FakeApplications::Get().locations, bundle_id));
}

std::optional<std::string> PathOf(const ApplicationLocation& location) { return location.path; }
BundleRef BundleAt(const ApplicationLocation& location) {
  return location.path ? BundleAtPath(*location.path) : nullptr;
}
BundleRef BundleAtPath(const std::string& path) {
  return Share(Find(FakeApplications::Get().bundles, path));
}
std::optional<std::string> BundleId(const Bundle& bundle) { return bundle.id; }
bool IsBackgroundOnly(const Bundle& bundle) { return bundle.is_background_only; }
bool IsAgent(const Bundle& bundle) { return bundle.is_agent; }

std::vector<std::string> ApplicationFolders() { return FakeApplications::Get().folders; }
std::string PathInFolder(const std::string& folder, const std::string& name) {
  return folder + "/" + name + ".app";
}
bool PathExists(const std::string& path) {
  Record("exists " + path);
  return FakeApplications::Get().bundles.contains(path);
}
std::optional<std::string> DisplayNameAtPath(const std::string& path) {
  return Find(FakeApplications::Get().display_names, path);
}

std::string LowerCase(const std::string& text) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return std::tolower(letter); });
  return lower;
}

size_t CountOf(const IndexedApplications& applications) { return applications.items.size(); }
std::optional<std::string> PathAt(const IndexedApplications& applications, size_t index) {
  return applications.items[index].path;
}
std::optional<std::string> DisplayNameAt(const IndexedApplications& applications, size_t index) {
  return applications.items[index].display_name;
}
void QueryApplicationIndex(IndexHandler handler) {
  const auto& index = FakeApplications::Get().index;
  if (index) handler(std::make_shared<const IndexedApplications>(IndexedApplications{*index}));
}

WindowListRef OnScreenWindows() {
  const auto& windows = FakeApplications::Get().windows;
  return windows ? std::make_shared<const WindowList>(WindowList{*windows}) : nullptr;
}
size_t CountOf(const WindowList& list) { return list.windows.size(); }
std::optional<int32_t> OwnerProcessId(const WindowList& list, size_t index) {
  return list.windows[index].pid;
}
std::optional<int32_t> LayerOf(const WindowList& list, size_t index) {
  return list.windows[index].layer;
}
std::optional<float> AlphaOf(const WindowList& list, size_t index) {
  return list.windows[index].alpha;
}
std::optional<std::string> OwnerName(const WindowList& list, size_t index) {
  return list.windows[index].owner_name;
}
std::optional<Rect> BoundsOf(const WindowList& list, size_t index) {
  Record("bounds of " + std::to_string(index));
  return list.windows[index].bounds;
}
RunningApplicationRef OwnerOf(const WindowList& list, size_t index) {
  Record("owner of " + std::to_string(index));
  for (const auto& application : FakeApplications::Get().running) {
    if (application.pid == list.windows[index].pid) return Share(std::optional(application));
  }
  return nullptr;
}

std::optional<std::string> ClipboardText() { return FakeApplications::Get().clipboard; }
void ClearClipboard() {
  Record("clear clipboard");
  FakeApplications::Get().clipboard = std::nullopt;
}
void SetClipboardText(const std::string& text) {
  Record("set clipboard");
  FakeApplications::Get().clipboard = text;
}

}  // namespace deskhand::platform
