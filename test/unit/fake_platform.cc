#include "unit/fake_platform.h"

#include <condition_variable>
#include <mutex>
#include <sstream>
#include <thread>
#include <utility>
#include <vector>

#include "platform/call_scope.h"
#include "platform/main_queue.h"
#include "unit/fake_applications.h"

namespace deskhand::platform {

FakePlatform& FakePlatform::Get() {
  static FakePlatform platform;
  return platform;
}

namespace {

/// Works on after a test has what it waited for, with what the fakes keep: until it is done nothing
/// of that may go.
class MainQueueThreads {
 public:
  static MainQueueThreads& Get() {
    FakePlatform::Get();  // before this, so that they are destroyed after it
    FakeApplications::Get();
    static MainQueueThreads threads;
    return threads;
  }

  ~MainQueueThreads() { Join(); }

  void Run(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    threads_.emplace_back(std::move(work));
  }

  void Join() {
    std::vector<std::thread> threads;
    {
      const std::lock_guard lock(mutex_);
      threads = std::exchange(threads_, {});
    }
    for (std::thread& thread : threads) thread.join();
  }

 private:
  std::mutex mutex_;
  std::vector<std::thread> threads_;
};

}  // namespace

void FakePlatform::Reset() {
  MainQueueThreads::Get().Join();
  Get() = FakePlatform();
}

CallScope::CallScope() : handle_(nullptr) {}
CallScope::~CallScope() { static_cast<void>(handle_); }

std::vector<Screen> Screens() { return FakePlatform::Get().screens; }
std::optional<Screen> MainScreen() { return FakePlatform::Get().main_screen; }
uint32_t MainDisplayId() { return FakePlatform::Get().main_display_id; }
double PrimaryScreenHeight() {
  const auto& screens = FakePlatform::Get().screens;
  return screens.empty() ? 0 : screens.front().frame.height;
}

std::optional<uint32_t> DisplayAt(Point point) {
  const double primary_height = PrimaryScreenHeight();
  for (const Screen& screen : Screens()) {
    const Rect& frame = screen.frame;
    const double top = primary_height - frame.y - frame.height;
    if (point.x >= frame.x && point.x < frame.x + frame.width && point.y >= top &&
        point.y < top + frame.height) {
      return screen.id;
    }
  }
  return std::nullopt;
}

void PostToMainQueue(std::function<void()> work) {
  FakePlatform& platform = FakePlatform::Get();
  if (platform.main_queue_is_serviced) {
    MainQueueThreads::Get().Run(std::move(work));
  } else {
    platform.held_back.push_back(std::move(work));
  }
}

struct Semaphore::State {
  std::mutex mutex;
  std::condition_variable signalled;
  int count = 0;
};

Semaphore::Semaphore() : state_(std::make_shared<State>()) {}

void Semaphore::Signal() const {
  const std::lock_guard lock(state_->mutex);
  ++state_->count;
  state_->signalled.notify_one();
}

bool Semaphore::Wait(std::chrono::nanoseconds timeout) const {
  std::unique_lock lock(state_->mutex);
  FakePlatform::Get().waits.push_back(timeout);
  const bool is_served = FakePlatform::Get().main_queue_is_serviced;
  // A wait that is to time out does so soon; one that is to end has all the time of a slow machine.
  const auto patience = is_served ? timeout : timeout / 1000;
  const auto is_signalled = [this] { return state_->count > 0; };
  if (!state_->signalled.wait_for(lock, patience, is_signalled)) return false;
  --state_->count;
  return true;
}

std::vector<ShareableDisplay> Displays(const ShareableContent& content) { return content.displays; }

std::vector<std::optional<std::string>> ApplicationBundleIds(const ShareableContent& content) {
  return content.applications;
}

void GetShareableContent(ContentHandler handler) {
  const FakePlatform& platform = FakePlatform::Get();
  ShareableContentRef content;
  if (platform.content) content = std::make_shared<const ShareableContent>(*platform.content);
  handler(std::move(content), platform.content_error);
}

void CaptureImage(const CaptureFilter& filter, const CaptureConfiguration& configuration,
                  ImageHandler handler) {
  FakePlatform& platform = FakePlatform::Get();
  platform.filter = filter;
  platform.configuration = configuration;
  const CapturedImage image;
  handler(platform.has_image ? &image : nullptr, platform.image_error);
}

std::shared_ptr<const EncodedImage> EncodeJpeg(const CapturedImage&, int32_t, int32_t,
                                               double quality) {
  FakePlatform& platform = FakePlatform::Get();
  platform.quality = quality;
  if (!platform.encoded_size) return nullptr;
  return std::make_shared<const EncodedImage>(EncodedImage{*platform.encoded_size});
}

namespace {

/// A line like "key 8 down, flags 0x100000".
void RecordInput(std::string line, std::optional<uint64_t> flags = {}) {
  if (flags) {
    std::ostringstream mask;
    mask << ", flags 0x" << std::hex << *flags;
    line += mask.str();
  }
  FakePlatform::Get().input.push_back(std::move(line));
}

/// Printable ASCII as it is, any other unit as its number.
std::string Show(std::u16string_view text) {
  std::ostringstream shown;
  for (const char16_t unit : text) {
    if (unit >= u' ' && unit <= u'~') {
      shown << static_cast<char>(unit);
    } else {
      shown << '<' << std::hex << static_cast<unsigned>(unit) << '>';
    }
  }
  return shown.str();
}

}  // namespace

InputScope::InputScope(uint64_t flags, std::u16string_view text) {
  RecordInput(text.empty() ? "begin" : "begin '" + Show(text) + "'",
              flags == 0 ? std::nullopt : std::optional(flags));
}

InputScope::~InputScope() { RecordInput("end"); }

void PostMouseEvent(const MouseEvent& event) {
  FakePlatform::Get().mouse_events.push_back(event);
  std::ostringstream line;
  line << "mouse " << static_cast<uint32_t>(event.type) << " at " << event.position.x << ","
       << event.position.y << " button " << static_cast<uint32_t>(event.button);
  if (event.click_state) line << ", click " << *event.click_state;
  RecordInput(line.str(), event.flags);
}

void PostWheelEvent(int32_t vertical, int32_t horizontal) {
  RecordInput("wheel " + std::to_string(vertical) + "," + std::to_string(horizontal));
}

void PostKeyEvent(const KeyEvent& event) {
  RecordInput("key " + std::to_string(event.key_code) + (event.is_down ? " down" : " up"),
              event.flags);
}

void PostText(std::u16string_view run) { RecordInput("text '" + Show(run) + "'"); }

Point CursorPosition() { return FakePlatform::Get().cursor; }

void Pause(uint32_t microseconds) { RecordInput("pause " + std::to_string(microseconds)); }

size_t SizeInBytes(const EncodedImage& encoded) { return encoded.size; }

std::string Base64(const EncodedImage&) { return "base64 text"; }

}  // namespace deskhand::platform
