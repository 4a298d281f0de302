// Methods of Foundation's own classes, replaced where GNUstep's do something else than macOS's, or
// where a scene scripts the answer. Thread: the one that loads the library.
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace macdoubles {

/// Puts `replacement` in the place of a method that the class has or inherits; what stood there.
/// A class method is its metaclass's method.
template <class Function>
Function* ReplaceMethod(Class owner, SEL selector, Function* replacement) {
  const Method method = class_getInstanceMethod(owner, selector);
  const auto original = reinterpret_cast<Function*>(method_getImplementation(method));
  const IMP implementation = reinterpret_cast<IMP>(replacement);
  const char* const types = method_getTypeEncoding(method);
  // An inherited method stays the superclass's: GCC's runtime would replace it there.
  if (!class_addMethod(owner, selector, implementation, types)) {
    class_replaceMethod(owner, selector, implementation, types);
  }
  return original;
}

template <class Function>
Function* ReplaceClassMethod(Class owner, SEL selector, Function* replacement) {
  return ReplaceMethod(object_getClass(owner), selector, replacement);
}

}  // namespace macdoubles
