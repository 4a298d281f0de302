// What the keyboard does with a chord. The modifiers travel as flags on the key's own events; no
// keys of theirs are pressed. An event that the platform cannot make is skipped.
// Thread: the JavaScript thread, which the pauses block.
#pragma once

#include <cstdint>

#include "input/chord.h"

namespace deskhand {

/// Presses and releases the chord's key `taps` times, once when that is below 2, 20 ms apart. The
/// chord must have a key.
void TapChord(const ParsedChord& chord, int32_t taps);

/// Holds the chord's key down for `duration_ms`, for no time when that is below 1. It is counted in
/// microseconds of 32 bits, and so wraps around above 4,294,967 ms. The chord must have a key.
void HoldChord(const ParsedChord& chord, int32_t duration_ms);

}  // namespace deskhand
