// Locations of applications: to the backend an NSURL.
#pragma once

#include <string>

#import <Foundation/Foundation.h>

namespace macdoubles {

/// A location with this path, autoreleased.
NSURL* MakeLocation(const std::string& path);

/// The path of such a location, without asking it.
std::string PathOfLocation(NSURL* location);

}  // namespace macdoubles
