#include "platform/x11/application_identity.h"

#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "unit/child_process.h"
#include "unit/entry_folders.h"

namespace deskhand::platform {
namespace {

using Id = std::optional<std::string>;

DesktopEntry Entry(const std::string& id) { return {.id = id}; }

DesktopEntry WithClass(const std::string& id, const std::string& startup_wm_class) {
  return {.id = id, .startup_wm_class = startup_wm_class};
}

DesktopEntry Running(const std::string& id, const std::string& program,
                     std::vector<std::string> arguments = {}) {
  return {.id = id,
          .program = program,
          .program_name = program.substr(program.rfind('/') + 1),
          .arguments = std::move(arguments)};
}

DesktopEntry Unshown(DesktopEntry entry) {
  entry.is_shown = false;
  return entry;
}

EntryIndex Index(std::vector<DesktopEntry> entries) {
  return {std::move(entries), {"/usr/share/applications"}};
}

/// What a process tells that was started as `program` with these arguments.
ProcessFacts Process(const std::string& program, std::vector<std::string> arguments = {}) {
  return {.program = program,
          .name = program.substr(program.rfind('/') + 1),
          .arguments = std::move(arguments)};
}

Id ByProcess(const EntryIndex& index, const ProcessFacts& process) {
  return index.EntryOf({.process_id = 1}, &process);
}

TEST(EntryOf, PutsTheGtkIdentifierFirst) {
  const EntryIndex index = Index({Entry("org.a.Gtk"), WithClass("b", "Class"), Entry("class")});
  ProcessFacts process = Process("/bin/x");
  process.launched_entry = "/usr/share/applications/launched.desktop";
  const WindowFacts window{"class", "Class", "org.a.Gtk", 1};
  EXPECT_EQ(index.EntryOf(window, &process), "org.a.Gtk");
}

TEST(EntryOf, TakesAGtkIdentifierOnlyAsItIs) {
  const EntryIndex index = Index({Entry("org.a.gtk")});
  EXPECT_EQ(index.EntryOf({.gtk_application_id = "org.a.Gtk"}, nullptr), std::nullopt);
}

TEST(EntryOf, PutsTheEntryThatWasLaunchedSecond) {
  const EntryIndex index = Index({Entry("launched"), WithClass("b", "Class"), Entry("class")});
  ProcessFacts process = Process("/bin/x");
  process.launched_entry = "/usr/share/applications/launched.desktop";
  EXPECT_EQ(index.EntryOf({"class", "Class", "org.none", 1}, &process), "launched");
}

TEST(EntryOf, CountsALaunchedEntryThatIsGoneOrLiesElsewhere) {
  const EntryIndex index = Index({});
  ProcessFacts process = Process("/bin/x");
  process.launched_entry = "/usr/share/applications/kde/gone.desktop";
  EXPECT_EQ(ByProcess(index, process), "kde-gone");
  process.launched_entry = "/home/a/Desktop/own.desktop";
  EXPECT_EQ(ByProcess(index, process), "own");
  process.launched_entry = "/home/a/Desktop/.desktop";
  EXPECT_EQ(ByProcess(index, process), std::nullopt);
}

TEST(EntryOf, PutsTheStartupClassThirdInstanceFirst) {
  const EntryIndex index = Index({WithClass("browser", "Browser"), WithClass("mail", "web_mail"),
                                  Entry("web_mail"), Entry("Browser")});
  EXPECT_EQ(index.EntryOf({.wm_instance = "web_mail", .wm_class = "Browser"}, nullptr), "mail");
  EXPECT_EQ(index.EntryOf({.wm_instance = "other", .wm_class = "Browser"}, nullptr), "browser");
}

TEST(EntryOf, PutsTheClassFourthAsItIsAndThenInLowerCase) {
  const EntryIndex index = Index({Entry("org.a.View"), Entry("my-view"), Entry("view")});
  EXPECT_EQ(index.EntryOf({.wm_class = "org.a.View"}, nullptr), "org.a.View");
  EXPECT_EQ(index.EntryOf({.wm_class = "My View"}, nullptr), "my-view");
  EXPECT_EQ(index.EntryOf({.wm_instance = "VIEW", .wm_class = "My View"}, nullptr), "view");
  EXPECT_EQ(index.EntryOf({.wm_instance = "VIEW", .wm_class = "my-view"}, nullptr), "my-view");
}

TEST(EntryOf, PutsTheProgramLast) {
  const EntryIndex index = Index({Running("viewer", "/bin/view"), Entry("class")});
  const ProcessFacts process = Process("/bin/view");
  EXPECT_EQ(index.EntryOf({.wm_class = "Class"}, &process), "class");
  EXPECT_EQ(index.EntryOf({.wm_class = "Unknown"}, &process), "viewer");
}

TEST(EntryOf, IsNoneWhenNothingClaimsTheWindow) {
  const EntryIndex index = Index({Running("viewer", "/bin/view"), Entry("class"), Entry("x")});
  const ProcessFacts process = Process("/bin/other"), unknown;
  EXPECT_EQ(index.EntryOf({"a", "b", "c", 1}, &process), std::nullopt);
  EXPECT_EQ(index.EntryOf({}, &unknown), std::nullopt);
  EXPECT_EQ(index.EntryOf({}, nullptr), std::nullopt);
}

TEST(EntryOf, PrefersAmongEqualsWhatIsNamedSoThenWhatIsShownThenTheAlphabet) {
  const WindowFacts window{.wm_class = "My View"};
  const DesktopEntry named = WithClass("my-view", "My View"), first = WithClass("a", "My View"),
                     second = WithClass("b", "My View");
  EXPECT_EQ(Index({second, first, Unshown(named)}).EntryOf(window, nullptr), "my-view");
  EXPECT_EQ(Index({Unshown(first), second}).EntryOf(window, nullptr), "b");
  EXPECT_EQ(Index({second, first}).EntryOf(window, nullptr), "a");
  const ProcessFacts process = Process("/bin/view");
  EXPECT_EQ(ByProcess(Index({Unshown(Running("a", "/bin/view")), Running("c", "/bin/view"),
                             Running("b", "/bin/view")}),
                      process),
            "b");
}

TEST(EntryOfProcess, DemandsWhatTheEntryRunsTheProgramWith) {
  const EntryIndex index = Index({Running("tool", "/bin/python3", {"/usr/lib/tool.py"})});
  EXPECT_EQ(ByProcess(index, Process("/bin/python3", {"/usr/lib/tool.py", "file"})), "tool");
  EXPECT_EQ(ByProcess(index, Process("/bin/python3", {"/usr/lib/other.py"})), std::nullopt);
  EXPECT_EQ(ByProcess(index, Process("/bin/python3")), std::nullopt);
}

TEST(EntryOfProcess, DoesNotDemandOptions) {
  const EntryIndex index = Index({Running("viewer", "/bin/view", {"--new-window"})});
  EXPECT_EQ(ByProcess(index, Process("/bin/view", {"file"})), "viewer");
}

TEST(EntryOfProcess, TakesTheEntryThatFitsBest) {
  const EntryIndex index =
      Index({Running("a-settings", "/bin/view", {"--settings"}), Running("viewer", "/bin/view"),
             Running("z-open", "/bin/view", {"--settings", "open"})});
  EXPECT_EQ(ByProcess(index, Process("/bin/view")), "viewer");
  EXPECT_EQ(ByProcess(index, Process("/bin/view", {"file"})), "viewer");
  EXPECT_EQ(ByProcess(index, Process("/bin/view", {"--settings"})), "a-settings");
  EXPECT_EQ(ByProcess(index, Process("/bin/view", {"open", "--settings"})), "z-open");
}

TEST(EntryOfProcess, TellsProgramsOfOneFileByTheNameTheyAreStartedBy) {
  DesktopEntry first = Running("a", "/bin/many"), second = Running("b", "/bin/many");
  first.program_name = "one", second.program_name = "two";
  ProcessFacts process = Process("/bin/many");
  process.name = "two";
  EXPECT_EQ(ByProcess(Index({first, second}), process), "b");
}

TEST(EntryOfProcess, TakesAScriptForTheProgram) {
  const EntryIndex index = Index({Running("python", "/bin/python3"), Running("tool", "/bin/tool")});
  ProcessFacts process = Process("/bin/python3", {"/bin/tool"});
  process.script = "/bin/tool";
  EXPECT_EQ(ByProcess(index, process), "tool");
}

TEST(EntryOfProcess, DoesNotTakeAScriptForItsInterpreter) {
  ProcessFacts process = Process("/bin/python3", {"-u", "/lib/tool.py", "open"});
  process.script = "/lib/tool.py";
  EXPECT_EQ(ByProcess(Index({Running("python", "/bin/python3")}), process), std::nullopt);
  EXPECT_EQ(ByProcess(Index({Running("python", "/bin/python3", {"open"})}), process), std::nullopt);
  EXPECT_EQ(ByProcess(Index({Running("tool", "/bin/python3", {"/lib/tool.py"})}), process), "tool");
}

TEST(EntryOfProcess, ClaimsNothingForALauncher) {
  const EntryIndex index = Index({Running("shell", "/bin/sh", {"-c", "exec view"}),
                                  Running("boxed", "/bin/flatpak", {"run", "org.a.View"})});
  EXPECT_EQ(ByProcess(index, Process("/bin/sh", {"-c", "exec other"})), std::nullopt);
  EXPECT_EQ(ByProcess(index, Process("/bin/flatpak", {"run", "org.a.Other"})), std::nullopt);
  EXPECT_EQ(ByProcess(index, Process("/bin/view")), std::nullopt);
}

TEST(BundleIdOf, IsTheClassWhereNoEntryIs) {
  ApplicationIdentities identities;
  EXPECT_EQ(identities.BundleIdOf({.wm_instance = "i", .wm_class = "No Entry"}), "No Entry");
  EXPECT_EQ(identities.BundleIdOf({.wm_instance = "instance-only"}), std::nullopt);
  EXPECT_EQ(identities.BundleIdOf({.gtk_application_id = "org.no.Entry"}), std::nullopt);
  EXPECT_EQ(identities.BundleIdOf({}), std::nullopt);
}

TEST(BundleIdOf, CopesWithAnyBytes) {
  const std::string bytes = "\xff\xc0\x80\x01", long_name(1 << 20, 'N');
  ApplicationIdentities identities;
  EXPECT_EQ(identities.BundleIdOf({bytes, bytes, bytes, 0}), bytes);
  EXPECT_EQ(identities.BundleIdOf(
                {long_name, long_name, long_name, std::numeric_limits<uint32_t>::max()}),
            long_name);
}

TEST(BundleIdOf, FindsTheEntryOfARealProcess) {
  const ChildProcess child({"cat", "/dev/stdin"});
  WriteFile(UserEntries() / "org.test.Reader.desktop", EntryText("Exec=cat /dev/stdin\n"));
  ApplicationIdentities identities;
  EXPECT_TRUE(Eventually([&] {
    identities.Refresh();
    return identities.BundleIdOf({.wm_class = "Any", .process_id = child.id()}) ==
           "org.test.Reader";
  }));
}

TEST(BundleIdOf, FollowsTheEntries) {
  const auto file = UserEntries() / "org.test.Follow.desktop";
  const WindowFacts window{.wm_class = "Followed"};
  ApplicationIdentities identities;
  const auto becomes = [&](const std::string& id) {
    return Eventually([&] {
      identities.Refresh();
      return identities.BundleIdOf(window) == id;
    });
  };
  EXPECT_TRUE(becomes("Followed"));
  WriteFile(file, EntryText("Exec=cat\nStartupWMClass=Followed\n"));
  EXPECT_TRUE(becomes("org.test.Follow"));
  std::filesystem::remove(file);
  EXPECT_TRUE(becomes("Followed"));
}

}  // namespace
}  // namespace deskhand::platform
