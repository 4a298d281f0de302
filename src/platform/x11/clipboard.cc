#include "platform/clipboard.h"

#include <chrono>

#include "platform/x11/clipboard_reader.h"
#include "platform/x11/clipboard_thread.h"

namespace deskhand::platform {
namespace {

// The JavaScript thread waits: for another program that has a text to give, and for the server.
constexpr std::chrono::seconds kLongestRead{1};
constexpr std::chrono::seconds kLongestWrite{2};

}  // namespace

std::optional<std::string> ClipboardText() {
  const Deadline deadline = Clock::now() + kLongestRead;
  if (const SharedText own = OwnClipboardText(deadline)) return *own;
  return ReadClipboard(deadline);
}

// The text that comes next takes the place of all that is there, in one step. A clipboard without
// contents in between would only be seen by those who happen to look at it.
void ClearClipboard() {}

void SetClipboardText(const std::string& text) { OwnClipboard(text, Clock::now() + kLongestWrite); }

}  // namespace deskhand::platform
