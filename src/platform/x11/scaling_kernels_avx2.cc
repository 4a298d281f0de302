// Compiled for AVX2: see the build's list of files.
#define DESKHAND_KERNELS kAvx2Kernels
#include "platform/x11/scaling_kernels_impl.h"
