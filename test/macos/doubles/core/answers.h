// How and when a framework answers a request: what the scene says about completion handlers.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace macdoubles {

/// Delivers the answer to one request the way `scene[subject].answer` says:
///   "thread"     on a framework thread, at once; the default
///   "inline"     before the request returns
///   "main queue" as a block on the main queue
///   "held"       when the test delivers it
///   "never"      not at all, though the framework keeps the handler until the test ends
/// and as often as `scene[subject].times` says; once when it says nothing.
void Answer(const std::string& subject, std::function<void()> deliver);

/// Delivers the held answers of a subject, or of all when it is empty, on framework threads.
/// Returns how many there were.
size_t DeliverHeld(const std::string& subject);

/// Held answers that were not delivered.
size_t HeldAnswers();

/// Lets go of every handler that is kept undelivered, as a framework does in the end.
void DropAnswers();

}  // namespace macdoubles
