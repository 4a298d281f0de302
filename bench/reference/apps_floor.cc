// The floor under questions about windows and applications. For each line of standard input prints
// the microseconds of each time:
//   trips COUNT     the bare round trips of deskhand when nothing has changed: which monitors there
//                   are, and which windows
//   windows COUNT   those of a program that remembers nothing: it asks the window manager for the
//                   windows, and then each of them, all at once
//   entries COUNT   GIO's own enumeration of what is installed, with each entry's names and file
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <gio/gdesktopappinfo.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

class Server {
 public:
  Server() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_)) exit(1);
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    free(xcb_randr_query_version_reply(connection_, xcb_randr_query_version(connection_, 1, 5),
                                       nullptr));
    const std::string name = "_NET_CLIENT_LIST_STACKING";
    xcb_intern_atom_reply_t* const atom = xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, name.size(), name.data()), nullptr);
    if (!atom) exit(1);
    client_list_ = atom->atom;
    free(atom);
  }

  void AskForTrips() const {
    AskForMonitors();
    free(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr));
  }

  void AskForWindows() const {
    AskForMonitors();
    xcb_get_property_reply_t* const list = xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, root_, client_list_, XCB_ATOM_WINDOW, 0, 1024), nullptr);
    if (!list) exit(1);
    const auto* const first = static_cast<const xcb_window_t*>(xcb_get_property_value(list));
    AskEach({first, first + list->value_len});
    free(list);
  }

 private:
  void AskForMonitors() const {
    free(xcb_randr_get_monitors_reply(connection_, xcb_randr_get_monitors(connection_, root_, 1),
                                      nullptr));
  }

  /// Where each is, whether it is shown, and what eight of its properties are. The answers are
  /// taken in their order, or XCB looks for each among all.
  void AskEach(const std::vector<xcb_window_t>& windows) const {
    struct Questions {
      xcb_get_window_attributes_cookie_t attributes;
      xcb_get_geometry_cookie_t place;
      xcb_get_property_cookie_t properties[8];
    };
    std::vector<Questions> asked(windows.size());
    for (size_t index = 0; index < windows.size(); ++index) {
      const xcb_window_t window = windows[index];
      asked[index].attributes = xcb_get_window_attributes(connection_, window);
      asked[index].place = xcb_get_geometry(connection_, window);
      for (auto& property : asked[index].properties) {
        property = xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_ANY, 0, 64);
      }
    }
    for (const Questions& questions : asked) {
      free(xcb_get_window_attributes_reply(connection_, questions.attributes, nullptr));
      free(xcb_get_geometry_reply(connection_, questions.place, nullptr));
      for (const auto cookie : questions.properties) {
        free(xcb_get_property_reply(connection_, cookie, nullptr));
      }
    }
  }

  xcb_connection_t* const connection_;
  xcb_window_t root_;
  xcb_atom_t client_list_;
};

size_t Enumerate() {
  size_t length = 0;
  GList* const all = g_app_info_get_all();
  for (GList* item = all; item; item = item->next) {
    auto* const entry = G_DESKTOP_APP_INFO(item->data);
    for (const char* text :
         {g_app_info_get_id(G_APP_INFO(entry)), g_app_info_get_display_name(G_APP_INFO(entry)),
          g_desktop_app_info_get_filename(entry)}) {
      if (text) length += std::string(text).size();
    }
  }
  g_list_free_full(all, g_object_unref);
  return length;
}

}  // namespace

int main() {
  const Server server;
  std::string what;
  size_t length = 0;
  for (int count = 0; std::cin >> what >> count;) {
    for (int index = 0; index < count; ++index) {
      const Clock::time_point start = Clock::now();
      if (what == "trips") {
        server.AskForTrips();
      } else if (what == "windows") {
        server.AskForWindows();
      } else {
        length += Enumerate();
      }
      const std::chrono::duration<double, std::micro> took = Clock::now() - start;
      std::printf("%.2f ", took.count());
    }
    std::printf("\n");
    std::fflush(stdout);
  }
  if (length == 1) std::fprintf(stderr, "one letter\n");  // or it need not be looked at
}
