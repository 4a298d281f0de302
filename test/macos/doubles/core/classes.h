// Classes of the runtime, made ready. Thread: the first one, before there are others.
#pragma once

namespace macdoubles {

/// GCC's runtime prepares a class when it gets its first message, and two threads that send that
/// message at once can crash it. This prepares every class there is.
void PrepareClasses();

}  // namespace macdoubles
