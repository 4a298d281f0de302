#define DESKHAND_KERNELS kPortableKernels
#include "platform/x11/scaling_kernels_impl.h"
