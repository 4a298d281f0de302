// What the unwinder calls for the frames of the backend. They hold clean-ups only (the backend
// catches nothing), and those GCC's own Objective-C personality runs as they are.
#include <unwind.h>

extern "C" {

_Unwind_Reason_Code __gnu_objc_personality_v0(int version, _Unwind_Action actions,
                                              _Unwind_Exception_Class exception_class,
                                              struct _Unwind_Exception* exception,
                                              struct _Unwind_Context* context);

_Unwind_Reason_Code __gnustep_objcxx_personality_v0(int version, _Unwind_Action actions,
                                                    _Unwind_Exception_Class exception_class,
                                                    struct _Unwind_Exception* exception,
                                                    struct _Unwind_Context* context) {
  return __gnu_objc_personality_v0(version, actions, exception_class, exception, context);
}

}  // extern "C"
