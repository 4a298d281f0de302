// Ownership of a Core Foundation object. Thread: any.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

namespace deskhand::platform {

/// Owns what a function with Create or Copy in its name returns, which may be null.
template <class Reference>
class CFOwner {
 public:
  explicit CFOwner(Reference reference) : reference_(reference) {}
  ~CFOwner() {
    if (reference_) CFRelease(reference_);
  }
  CFOwner(const CFOwner&) = delete;
  CFOwner& operator=(const CFOwner&) = delete;

  /// Null when there was nothing to own.
  Reference get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }

 private:
  const Reference reference_;
};

}  // namespace deskhand::platform
