// Where an application is installed, as Foundation has it. Thread: any, inside an autorelease pool.
#pragma once

#import <Foundation/Foundation.h>

namespace deskhand::platform {

struct ApplicationLocation {
  NSURL* url;
};

}  // namespace deskhand::platform
