#include "platform/x11/launching.h"

#include <memory>

#include <gio/gdesktopappinfo.h>
#include <signal.h>
#include <unistd.h>

namespace deskhand::platform {
namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};

template <class T>
using Object = std::unique_ptr<T, Unref>;

/// Runs in the new process, between fork and exec.
void PrepareChild(gpointer) {
  setsid();
  // Handlers end with exec; what is ignored or blocked would stay so.
  sigset_t none;
  sigemptyset(&none);
  pthread_sigmask(SIG_SETMASK, &none, nullptr);
  for (int number = 1; number < NSIG; ++number) signal(number, SIG_DFL);
}

void NoteProcess(GDesktopAppInfo*, GPid process, gpointer result) {
  static_cast<LaunchResult*>(result)->process_id = process;
}

/// GIO would end this process when the session bus goes, unless told otherwise beforehand.
Object<GDBusConnection> TameSessionBus() {
  Object<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (bus) g_dbus_connection_set_exit_on_close(bus.get(), false);
  return bus;
}

}  // namespace

LaunchResult LaunchEntry(const std::string& file, const std::string& display, xcb_timestamp_t time,
                         const std::function<void(const StartupSequence&)>& announce) {
  LaunchResult result;
  const Object<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(file.c_str()));
  if (!info) {
    result.error = file + " names no program that is installed";
    return result;
  }
  const Object<GDBusConnection> bus = TameSessionBus();
  const Object<GAppLaunchContext> context(g_app_launch_context_new());
  g_app_launch_context_setenv(context.get(), "DISPLAY", display.c_str());
  g_app_launch_context_unsetenv(context.get(), "DESKTOP_STARTUP_ID");
  if (g_desktop_app_info_get_boolean(info.get(), "StartupNotify")) {
    const StartupSequence sequence = MakeStartup(g_app_info_get_name(G_APP_INFO(info.get())), time);
    announce(sequence);
    g_app_launch_context_setenv(context.get(), "DESKTOP_STARTUP_ID", sequence.id.c_str());
  }
  // Descriptors are closed, and nobody has to wait for the process: GLib sees to both.
  const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                              G_SPAWN_STDERR_TO_DEV_NULL);
  GError* error = nullptr;
  const bool is_launched = g_desktop_app_info_launch_uris_as_manager(
      info.get(), nullptr, context.get(), flags, PrepareChild, nullptr, NoteProcess, &result,
      &error);
  if (!is_launched) result.error = error ? error->message : "the program could not be started";
  g_clear_error(&error);
  return result;
}

}  // namespace deskhand::platform
