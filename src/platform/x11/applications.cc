#include "platform/x11/applications.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <utility>

#include <gio/gdesktopappinfo.h>

#include "platform/x11/atoms.h"
#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kLongestText = 16384;  // in units of 4 bytes; longer names are cut

struct Atoms {
  std::optional<xcb_atom_t> gtk_application_id;
  std::optional<xcb_atom_t> net_wm_pid;
};

/// Everything asked of one window, sent before the first answer is waited for.
struct Question {
  xcb_window_t window;
  xcb_get_window_attributes_cookie_t attributes;
  xcb_get_property_cookie_t wm_class;
  std::optional<xcb_get_property_cookie_t> gtk_application_id;
  std::optional<xcb_get_property_cookie_t> process_id;
  xcb_query_tree_cookie_t tree;
};

struct Answer {
  bool is_complete = false;
  bool is_shown = false;
  ShownWindow window;
  std::vector<xcb_window_t> children;
};

Question Ask(xcb_connection_t* connection, xcb_window_t window, const Atoms& atoms) {
  const auto property = [&](std::optional<xcb_atom_t> name, xcb_atom_t type,
                            uint32_t length) -> std::optional<xcb_get_property_cookie_t> {
    // Asking for a property without a name is an error.
    if (name.value_or(XCB_ATOM_NONE) == XCB_ATOM_NONE) return std::nullopt;
    return xcb_get_property(connection, false, window, *name, type, 0, length);
  };
  return {
      .window = window,
      .attributes = xcb_get_window_attributes(connection, window),
      .wm_class = xcb_get_property(connection, false, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0,
                                   kLongestText),
      .gtk_application_id = property(atoms.gtk_application_id, XCB_ATOM_ANY, kLongestText),
      .process_id = property(atoms.net_wm_pid, XCB_ATOM_CARDINAL, 1),
      .tree = xcb_query_tree(connection, window),
  };
}

std::string Text(const Reply<xcb_get_property_reply_t>& property) {
  if (!property || property->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(property.get())),
          static_cast<size_t>(xcb_get_property_value_length(property.get()))};
}

/// Instance and class, each ended by a NUL, see the ICCCM, section 4.1.2.5.
void ReadClass(const std::string& text, ShownWindow* window) {
  const size_t end = text.find('\0');
  window->wm_instance = text.substr(0, end);
  if (end == std::string::npos) return;
  const std::string rest = text.substr(end + 1);
  window->wm_class = rest.substr(0, rest.find('\0'));
}

/// All replies are taken, used or not: XCB keeps those that nobody takes.
Answer Read(xcb_connection_t* connection, const Question& question) {
  Reply<xcb_get_property_reply_t> gtk_id, process;
  const auto attributes = Await(connection, xcb_get_window_attributes_reply, question.attributes);
  const auto wm_class = Await(connection, xcb_get_property_reply, question.wm_class);
  if (question.gtk_application_id) {
    gtk_id = Await(connection, xcb_get_property_reply, *question.gtk_application_id);
  }
  if (question.process_id) {
    process = Await(connection, xcb_get_property_reply, *question.process_id);
  }
  const auto tree = Await(connection, xcb_query_tree_reply, question.tree);
  Answer answer;
  answer.is_complete = attributes && wm_class && (gtk_id || !question.gtk_application_id) &&
                       (process || !question.process_id) && tree;
  answer.is_shown = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
  ReadClass(Text(wm_class), &answer.window);
  answer.window.gtk_application_id = Text(gtk_id);
  if (process && process->format == 32 && process->value_len == 1) {
    std::memcpy(&answer.window.process_id, xcb_get_property_value(process.get()),
                sizeof(answer.window.process_id));
  }
  if (tree) {
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    answer.children.assign(children, children + xcb_query_tree_children_length(tree.get()));
  }
  return answer;
}

bool NamesApplication(const ShownWindow& window) {
  return !window.wm_class.empty() || !window.wm_instance.empty() ||
         !window.gtk_application_id.empty() || window.process_id != 0;
}

/// The file name of the program that a process runs; empty when that cannot be known.
std::string ProgramOf(uint32_t process_id) {
  if (process_id == 0) return {};
  std::error_code error;
  const auto program =
      std::filesystem::read_symlink("/proc/" + std::to_string(process_id) + "/exe", error);
  return error ? std::string() : program.filename().string();
}

}  // namespace

ShownWindows QueryShownWindows(const Session& session) {
  xcb_connection_t* connection = session.connection();
  const Atoms atoms{InternAtom(connection, "_GTK_APPLICATION_ID"),
                    InternAtom(connection, "_NET_WM_PID")};
  ShownWindows shown;
  shown.is_complete = atoms.gtk_application_id && atoms.net_wm_pid;
  std::vector<xcb_window_t> level{session.screen().root};
  // To the bottom: an application's window may lie in a frame, or be embedded in that of another.
  while (!level.empty()) {
    std::vector<Question> questions;
    questions.reserve(level.size());
    for (const xcb_window_t window : level) questions.push_back(Ask(connection, window, atoms));
    level.clear();
    for (const Question& question : questions) {
      Answer answer = Read(connection, question);
      shown.is_complete &= answer.is_complete;
      if (!answer.is_shown) continue;
      level.insert(level.end(), answer.children.begin(), answer.children.end());
      const bool is_root = question.window == session.screen().root;
      if (!is_root && NamesApplication(answer.window)) {
        shown.windows.push_back(std::move(answer.window));
      }
    }
  }
  return shown;
}

std::optional<std::string> BundleIdOf(const ShownWindow& window) {
  if (!window.gtk_application_id.empty()) return window.gtk_application_id;
  if (!window.wm_class.empty()) return window.wm_class;
  return std::nullopt;
}

NamedApplication::NamedApplication(std::string bundle_id) : bundle_id_(std::move(bundle_id)) {
  const std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)> entry(
      g_desktop_app_info_new((bundle_id_ + ".desktop").c_str()), g_object_unref);
  if (!entry) return;
  if (const char* startup_class = g_desktop_app_info_get_startup_wm_class(entry.get())) {
    startup_class_ = startup_class;
  }
  if (const char* command = g_app_info_get_executable(G_APP_INFO(entry.get()))) {
    program_ = std::filesystem::path(command).filename().string();
  }
}

bool NamedApplication::MayOwn(const ShownWindow& window) const {
  const auto is_one_of = [](const std::string& name, std::initializer_list<std::string> names) {
    return !name.empty() && std::find(names.begin(), names.end(), name) != names.end();
  };
  return is_one_of(bundle_id_, {window.gtk_application_id, window.wm_class}) ||
         is_one_of(startup_class_, {window.wm_class, window.wm_instance}) ||
         is_one_of(program_, {window.wm_instance, ProgramOf(window.process_id)});
}

}  // namespace deskhand::platform
