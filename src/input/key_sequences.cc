#include "input/key_sequences.h"

#include <algorithm>

#include "platform/input.h"

namespace deskhand {
namespace {

constexpr uint32_t kTapPauseUs = 20'000;

void PostKey(const ParsedChord& chord, bool is_down) {
  platform::KeyEvent event{.key_code = chord.key_code, .is_down = is_down};
  if (chord.flags != 0) event.flags = chord.flags;
  platform::PostKeyEvent(event);
}

}  // namespace

void TapChord(const ParsedChord& chord, int32_t taps) {
  const platform::InputScope scope(chord.flags);
  const int64_t count = std::max(taps, 1);
  for (int64_t tap = 1; tap <= count; ++tap) {
    PostKey(chord, true);
    PostKey(chord, false);
    if (tap < count) platform::Pause(kTapPauseUs);
  }
}

void HoldChord(const ParsedChord& chord, int32_t duration_ms) {
  const platform::InputScope scope(chord.flags);
  PostKey(chord, true);
  if (duration_ms >= 1) platform::Pause(static_cast<uint32_t>(duration_ms) * 1000u);
  PostKey(chord, false);
}

}  // namespace deskhand
