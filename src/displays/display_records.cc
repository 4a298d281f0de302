#include "displays/display_records.h"

#include <algorithm>

namespace deskhand {
namespace {

DisplayRecord MakeRecord(const platform::Screen& screen, uint32_t id, uint32_t main_id,
                         double primary_height) {
  return {
      .id = id,
      .width = screen.frame.width,
      .height = screen.frame.height,
      .is_main = id == main_id,
      .origin_x = screen.frame.x,
      .origin_y = GlobalOriginY(screen.frame, primary_height),
      .scale_factor = screen.scale_factor,
      .name = screen.name.value_or("Display"),
  };
}

}  // namespace

double GlobalOriginY(const Rect& frame, double primary_height) {
  return primary_height - frame.y - frame.height;
}

const platform::Screen* FindScreen(const std::vector<platform::Screen>& screens, uint32_t id) {
  const auto found = std::find_if(screens.begin(), screens.end(),
                                  [id](const platform::Screen& screen) { return screen.id == id; });
  return found == screens.end() ? nullptr : &*found;
}

std::vector<DisplayRecord> DisplayRecords() {
  const std::vector<platform::Screen> screens = platform::Screens();
  const uint32_t main_id = platform::MainDisplayId();
  const double primary_height = platform::PrimaryScreenHeight();
  std::vector<DisplayRecord> records;
  for (const platform::Screen& screen : screens) {
    if (screen.id) records.push_back(MakeRecord(screen, *screen.id, main_id, primary_height));
  }
  return records;
}

DisplayRecord DisplayRecordFor(std::optional<uint32_t> wanted) {
  const uint32_t main_id = platform::MainDisplayId();
  const uint32_t id = wanted.value_or(main_id);
  const std::vector<platform::Screen> screens = platform::Screens();
  if (const platform::Screen* match = FindScreen(screens, id)) {
    return MakeRecord(*match, id, main_id, platform::PrimaryScreenHeight());
  }
  // The screen is the one with the active window, the identifier the main display's: callers get a
  // usable record whatever they asked for.
  platform::Screen fallback;
  if (const auto main_screen = platform::MainScreen()) {
    fallback = *main_screen;
  } else if (!screens.empty()) {
    fallback = screens.front();
  }
  return MakeRecord(fallback, main_id, main_id, platform::PrimaryScreenHeight());
}

}  // namespace deskhand
