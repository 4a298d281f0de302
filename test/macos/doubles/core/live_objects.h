// The doubles' objects that are alive. Thread: any.
#pragma once

#include <map>
#include <string>

namespace macdoubles {

/// How many objects made since BeginCounting() are alive, by label.
std::map<std::string, long> LiveObjects();

/// Leaves the objects that are alive now out of the count.
void BeginCounting();

}  // namespace macdoubles
