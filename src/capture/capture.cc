#include "capture/capture.h"

#include <memory>
#include <unordered_set>
#include <utility>

#include "capture/jpeg_encoding.h"
#include "platform/displays.h"

namespace deskhand {
namespace {

using ScreenshotCompletion = std::shared_ptr<Completion<Screenshot>>;

std::string Describe(const char* text, const std::optional<std::string>& error) {
  return error ? text + (": " + *error) : text;
}

/// The display with the wanted identifier, else the platform's first; none when there are none.
std::optional<size_t> ChooseDisplay(const std::vector<platform::ShareableDisplay>& displays,
                                    uint32_t requested) {
  const uint32_t wanted = requested != 0 ? requested : platform::MainDisplayId();
  if (displays.empty()) return std::nullopt;
  for (size_t index = 0; index < displays.size(); ++index) {
    if (displays[index].id == wanted) return index;
  }
  return 0;
}

std::vector<size_t> ApplicationsToExclude(const platform::ShareableContent& content,
                                          const std::vector<std::string>& bundle_ids) {
  // Not even asked for when nothing is to be left out: the answer can be costly.
  if (bundle_ids.empty()) return {};
  const std::unordered_set<std::string> excluded(bundle_ids.begin(), bundle_ids.end());
  const auto applications = platform::ApplicationBundleIds(content);
  std::vector<size_t> indices;
  for (size_t index = 0; index < applications.size(); ++index) {
    if (applications[index] && excluded.contains(*applications[index])) indices.push_back(index);
  }
  return indices;
}

/// One request on its way through the platform's answers; each step holds it until the next.
struct Chain : std::enable_shared_from_this<Chain> {
  CaptureRequest request;
  CapturePlanner plan;
  CaptureMessages messages;
  ScreenshotCompletion completion;

  void Start() {
    platform::GetShareableContent(
        [self = shared_from_this()](platform::ShareableContentRef content,
                                    const std::optional<std::string>& error) {
          self->OnContent(std::move(content), error);
        });
  }

  void OnContent(platform::ShareableContentRef content, const std::optional<std::string>& error) {
    if (!content || error) {
      completion->Fail(Describe("Failed to get shareable content", error));
      return;
    }
    const auto displays = platform::Displays(*content);
    const auto chosen = ChooseDisplay(displays, request.display_id);
    if (!chosen) {
      completion->Fail("No display found");
      return;
    }
    const CapturePlan planned = plan(displays[*chosen]);
    platform::CaptureFilter filter;
    filter.excluded_applications = ApplicationsToExclude(*content, request.exclude_bundle_ids);
    filter.content = std::move(content);
    filter.display = *chosen;
    filter.excluded_bundle_ids = request.exclude_bundle_ids;
    platform::CaptureImage(
        filter, planned.configuration,
        [self = shared_from_this(), planned](const platform::CapturedImage* image,
                                             const std::optional<std::string>& image_error) {
          self->OnImage(planned, image, image_error);
        });
  }

  void OnImage(const CapturePlan& planned, const platform::CapturedImage* image,
               const std::optional<std::string>& error) {
    if (!image || error) {
      completion->Fail(Describe(messages.capture_failed, error));
      return;
    }
    const int32_t width = planned.configuration.width;
    const int32_t height = planned.configuration.height;
    std::string base64 = EncodeImageToBase64JPEG(*image, width, height, request.quality);
    if (base64.empty()) {
      completion->Fail(messages.encoding_failed);
      return;
    }
    completion->Succeed({std::move(base64), width, height, planned.display});
  }
};

}  // namespace

Outcome<Screenshot> Capture(const CaptureRequest& request, CapturePlanner plan,
                            const CaptureMessages& messages) {
  auto outcome = RunOnMainQueue<Screenshot>(
      [request, plan = std::move(plan), messages](ScreenshotCompletion completion) {
        auto chain = std::make_shared<Chain>();
        chain->request = request;
        chain->plan = plan;
        chain->messages = messages;
        chain->completion = std::move(completion);
        chain->Start();
      });
  if (!outcome) return {std::nullopt, messages.timed_out};
  if (!outcome->value && outcome->error.empty()) outcome->error = messages.capture_failed;
  return std::move(*outcome);
}

}  // namespace deskhand
