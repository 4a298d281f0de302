#include "platform/x11/scaling_kernels.h"

namespace deskhand::platform {

const ScalingKernels& BestScalingKernels() { return kPortableKernels; }

}  // namespace deskhand::platform
