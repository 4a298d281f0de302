// Texts as programs on X11 hand them to each other. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace deskhand::platform {

/// `text` with U+FFFD in place of what is no UTF-8: one for each longest part that could have
/// begun a character, as decoders on the web do it.
std::string RepairedUtf8(std::string_view text);

/// The characters of ISO 8859-1, which ICCCM calls STRING, as UTF-8.
std::string Utf8FromLatin1(std::string_view latin1);

/// A question mark stands for each character that ISO 8859-1 lacks. `utf8` is valid.
std::string Latin1FromUtf8(std::string_view utf8);

}  // namespace deskhand::platform
