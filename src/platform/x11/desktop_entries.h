// The desktop entries of this machine: which applications there are, and what their windows and
// programs are called. Read through GIO.
// Threads: one at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace deskhand::platform {

/// What a desktop entry says of an application; empty where it says nothing.
struct DesktopEntry {
  std::string id = {};  // without ".desktop"
  std::string file = {};
  std::string name = {};  // in the user's language
  std::string startup_wm_class = {};
  std::string program = {};       // the file, links followed; empty too when run in a terminal
  std::string program_name = {};  // the last part of the program's name, as Exec writes it
  std::vector<std::string> arguments = {};  // see Command
  bool is_shown = true;                     // in menus of this desktop
};

struct Command {
  std::string program;                 // as it is written
  std::vector<std::string> arguments;  // without those that hold field codes
};

/// Reads an Exec line. Where it runs `env`, the command is what that runs. None when it is broken
/// or names no program.
std::optional<Command> ReadCommand(const std::string& exec);

/// The folders that hold desktop entries, as the environment says.
std::vector<std::string> EntryFolders();

/// The id that GIO gives to the entry in this file; its file name when it lies in none of
/// `folders`. Without ".desktop". The file need not exist.
std::string EntryIdOf(const std::string& file, const std::vector<std::string>& folders);

class DesktopEntries {
 public:
  DesktopEntries();
  ~DesktopEntries();
  DesktopEntries(const DesktopEntries&) = delete;
  DesktopEntries& operator=(const DesktopEntries&) = delete;

  /// Reads the entries when that was not done before, or when one was added, changed or removed
  /// since; says whether it did. Entries with NoDisplay are read too. Those that are deleted
  /// (Hidden), or whose program is not installed, are none.
  bool Refresh();

  const std::vector<DesktopEntry>& all() const { return entries_; }

 private:
  class Watch;

  // Made by the first Refresh: GLib starts a thread for it.
  std::unique_ptr<Watch> watch_;
  std::vector<DesktopEntry> entries_;
};

}  // namespace deskhand::platform
