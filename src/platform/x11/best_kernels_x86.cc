#include "platform/x11/scaling_kernels.h"

namespace deskhand::platform {

const ScalingKernels& BestScalingKernels() {
  return __builtin_cpu_supports("avx2") ? kAvx2Kernels : kPortableKernels;
}

}  // namespace deskhand::platform
