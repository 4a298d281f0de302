// Plain geometry that crosses the seam. The coordinate space is the one that each use names.
#pragma once

namespace deskhand {

struct Point {
  double x = 0;
  double y = 0;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

}  // namespace deskhand
