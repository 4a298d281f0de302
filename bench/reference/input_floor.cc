// The floor under input: the bare requests with their round trips, as the protocol needs them.
// For each line of standard input, "move COUNT" or "query COUNT": prints the microseconds of each.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace {

using Clock = std::chrono::steady_clock;

void RoundTrip(xcb_connection_t* connection) {
  free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

}  // namespace

int main() {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection)) return 1;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  std::string what;
  for (int count = 0; std::cin >> what >> count;) {
    for (int index = 0; index < count; ++index) {
      const Clock::time_point start = Clock::now();
      if (what == "move") {
        xcb_test_fake_input(connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, XCB_NONE,
                            static_cast<int16_t>(100 + index % 300), 50, 0);
        RoundTrip(connection);
      } else {
        free(xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr));
      }
      const std::chrono::duration<double, std::micro> took = Clock::now() - start;
      std::printf("%.2f ", took.count());
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}
