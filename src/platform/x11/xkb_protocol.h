// The header of the XKB protocol. It is C, and names a member with a keyword of C++.
#pragma once

#define explicit explicit_  // NOLINT(cppcoreguidelines-macro-usage)
#include <xcb/xkb.h>        // IWYU pragma: export
#undef explicit
