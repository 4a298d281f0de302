// usleep(): recorded and not slept, so that a test of a long pause is short.
// Documented in its manual page: microseconds; 0 on success.
#include <unistd.h>

#include "core/recorder.h"

extern "C" int __wrap_usleep(useconds_t microseconds);

int __wrap_usleep(useconds_t microseconds) {
  macdoubles::Record("usleep", {microseconds});
  return 0;
}
