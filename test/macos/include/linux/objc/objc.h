// GCC's YES and NO are integers, which Clang would box as such: @(YES) must be a boolean.
#pragma once

#include_next <objc/objc.h>

#ifdef __OBJC__
#undef YES
#undef NO
#define YES __objc_yes
#define NO __objc_no
#endif
