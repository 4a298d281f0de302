#include "capture/capture_handlers.h"

#include <utility>

#include "addon/arguments.h"
#include "addon/promise_worker.h"
#include "capture/display_capture.h"
#include "capture/region_capture.h"
#include "capture/target_size.h"

namespace deskhand {
namespace {

constexpr double kDefaultQuality = 0.75;

double ReadQuality(const Napi::CallbackInfo& info, size_t index) {
  if (!IsNumberAt(info, index)) return kDefaultQuality;
  const double quality = ReadDouble(info[index]);
  // Ordered comparisons only: NaN passes through, and each encoder copes with it.
  if (quality > 1.0 || quality <= 0.0) return kDefaultQuality;
  return quality;
}

uint32_t ReadDisplayId(const Napi::CallbackInfo& info, size_t index) {
  return IsNumberAt(info, index) ? ReadUint32(info[index]) : 0;
}

/// A text that is all ASCII. To decode it as UTF-8 would keep the JavaScript thread for longer.
Napi::Value AsciiString(Napi::Env env, const std::string& text) {
  napi_value value = nullptr;
  const napi_status status = napi_create_string_latin1(env, text.data(), text.size(), &value);
  NAPI_THROW_IF_FAILED(env, status, Napi::Value());
  return {env, value};
}

/// A worker that takes one screenshot; subclasses say which and what of it is returned.
class CaptureWorker : public PromiseWorker {
 protected:
  CaptureWorker(Napi::Env env, Napi::Promise::Deferred deferred, CaptureRequest request)
      : PromiseWorker(env, deferred), request_(std::move(request)) {}

  virtual Outcome<Screenshot> Take(const CaptureRequest& request) const = 0;

  void Execute() final {
    Outcome<Screenshot> outcome = Take(request_);
    if (outcome.value) {
      screenshot_ = std::move(*outcome.value);
    } else {
      SetError(outcome.error);
    }
  }

  Napi::Object PictureResult(Napi::Env env) const {
    Napi::Object result = Napi::Object::New(env);
    result.Set("base64", AsciiString(env, screenshot_.base64));
    result.Set("width", screenshot_.width);
    result.Set("height", screenshot_.height);
    return result;
  }

  const Screenshot& screenshot() const { return screenshot_; }

 private:
  const CaptureRequest request_;
  Screenshot screenshot_;
};

class CaptureDisplayWorker final : public CaptureWorker {
 public:
  CaptureDisplayWorker(Napi::Env env, Napi::Promise::Deferred deferred, CaptureRequest request)
      : CaptureWorker(env, deferred, std::move(request)) {}

 protected:
  Outcome<Screenshot> Take(const CaptureRequest& request) const override {
    return ScreenshotOfDisplay(request);
  }

  Napi::Value Result(Napi::Env env) const override {
    Napi::Object result = PictureResult(env);
    const DisplayGeometry& display = screenshot().display;
    result.Set("displayWidth", display.width);
    result.Set("displayHeight", display.height);
    result.Set("displayId", display.id);
    result.Set("originX", display.origin_x);
    result.Set("originY", display.origin_y);
    return result;
  }
};

class CaptureRegionWorker final : public CaptureWorker {
 public:
  CaptureRegionWorker(Napi::Env env, Napi::Promise::Deferred deferred, CaptureRequest request,
                      const Rect& region, PixelSize output)
      : CaptureWorker(env, deferred, std::move(request)), region_(region), output_(output) {}

 protected:
  Outcome<Screenshot> Take(const CaptureRequest& request) const override {
    return ScreenshotOfRegion(request, region_, output_);
  }

  Napi::Value Result(Napi::Env env) const override { return PictureResult(env); }

 private:
  const Rect region_;
  const PixelSize output_;
};

}  // namespace

Napi::Value CalculateTargetSize(const Napi::CallbackInfo& info) {
  if (info.Length() < 2 || !AreNumbers(info, 0, 1)) {
    return ThrowUsage<Napi::Error>(info,
                                   "calculateTargetSize(physWidth: number, physHeight: number)");
  }
  const PixelSize target = TargetSize(ReadInt32(info[0]), ReadInt32(info[1]));
  Napi::Object result = Napi::Object::New(info.Env());
  result.Set("width", target.width);
  result.Set("height", target.height);
  return result;
}

Napi::Value CaptureDisplay(const Napi::CallbackInfo& info) {
  if (info.Length() < 1 || !info[0].IsArray()) {
    return ThrowUsage<Napi::Error>(
        info, "captureDisplay(excludeBundleIds: string[], quality?: number, displayId?: number)");
  }
  auto bundle_ids = ReadStrings(info[0].As<Napi::Array>());
  if (!bundle_ids) return info.Env().Undefined();
  CaptureRequest request{std::move(*bundle_ids), ReadQuality(info, 1), ReadDisplayId(info, 2)};
  return PromiseWorker::Start(new CaptureDisplayWorker(
      info.Env(), Napi::Promise::Deferred::New(info.Env()), std::move(request)));
}

Napi::Value CaptureRegion(const Napi::CallbackInfo& info) {
  if (info.Length() < 7 || !info[0].IsArray() || !AreNumbers(info, 1, 6)) {
    return ThrowUsage<Napi::Error>(info,
                                   "captureRegion(excludeBundleIds: string[], x, y, w, h, outW, "
                                   "outH, quality?, displayId?)");
  }
  auto bundle_ids = ReadStrings(info[0].As<Napi::Array>());
  if (!bundle_ids) return info.Env().Undefined();
  const Rect region{ReadDouble(info[1]), ReadDouble(info[2]), ReadDouble(info[3]),
                    ReadDouble(info[4])};
  const PixelSize output{ReadInt32(info[5]), ReadInt32(info[6])};
  CaptureRequest request{std::move(*bundle_ids), ReadQuality(info, 7), ReadDisplayId(info, 8)};
  return PromiseWorker::Start(new CaptureRegionWorker(
      info.Env(), Napi::Promise::Deferred::New(info.Env()), std::move(request), region, output));
}

}  // namespace deskhand
