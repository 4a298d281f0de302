// GCC's header defines object_getClass() by looking into the object, which ARC forbids. Under ARC
// that definition is renamed, given a parameter that it may look into, and replaced below.
#pragma once

#include <objc/objc.h>

#if defined(__clang__) && __has_feature(objc_arc)

struct macdoubles_object {
  __unsafe_unretained Class class_pointer;
};

#pragma push_macro("nil")
#undef nil
#define nil 0
#define object_getClass(parameter) macdoubles_getClassOf(const struct macdoubles_object* object)
#include_next <objc/runtime.h>
#undef object_getClass
#pragma pop_macro("nil")

static inline Class object_getClass(id object) {
  return macdoubles_getClassOf((__bridge const struct macdoubles_object*)object);
}

#else
#include_next <objc/runtime.h>
#endif
