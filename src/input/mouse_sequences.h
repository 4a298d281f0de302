// What the mouse does: events in a fixed order with fixed pauses.
// Space: points in the global desktop space, origin at the top-left corner of the primary display,
// y down; nothing is clamped or rounded. An event that the platform cannot make is skipped.
// Thread: the JavaScript thread, which the pauses block.
#pragma once

#include <cstdint>
#include <optional>

#include "input/mouse_buttons.h"
#include "platform/geometry.h"

namespace deskhand {

/// Moves to `point` and clicks `count` times there, not at all when it is below 1. Each click knows
/// which of the row it is; `flags` are the modifiers of all of them, none when 0. Pauses for 50 ms
/// after every press and between clicks.
void Click(const MouseButtonInfo& button, Point point, int32_t count, uint64_t flags);

void MovePointer(Point point);

/// One event, without a move to `point` before it.
void PressButton(const MouseButtonInfo& button, Point point);
void ReleaseButton(const MouseButtonInfo& button, Point point);

/// Drags from `start` to `end`: thirteen events and 250 ms of pauses, whatever the distance.
void Drag(Point start, Point end, const MouseButtonInfo& button);

/// Turns the wheel by lines in one event, 10 ms after a move when there is a `place` to do it at.
void TurnWheel(int32_t horizontal, int32_t vertical, std::optional<Point> place);

}  // namespace deskhand
