#include "platform/x11/desktop_entries.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "unit/entry_folders.h"

namespace deskhand::platform {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const DesktopEntry* Find(const DesktopEntries& entries, const std::string& id) {
  const auto found = std::find_if(entries.all().begin(), entries.all().end(),
                                  [&](const DesktopEntry& entry) { return entry.id == id; });
  return found == entries.all().end() ? nullptr : &*found;
}

/// Waits until a change of the files was noticed and has this effect.
bool Sees(DesktopEntries* entries, const std::function<bool()>& effect) {
  return Eventually([&] {
    entries->Refresh();
    return effect();
  });
}

TEST(ReadCommand, SplitsAsAShellDoes) {
  const auto command = ReadCommand(R"("/opt/My App/run" --name "a \"b\" \$c" 'd e' f\ g %U)");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->program, "/opt/My App/run");
  EXPECT_EQ(command->arguments, (Texts{"--name", "a \"b\" $c", "d e", "f g"}));
}

TEST(ReadCommand, LeavesOutWhatHoldsAFieldCode) {
  const auto command = ReadCommand("view %f --title=%c 100%% file://%k %% 50%");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->arguments, (Texts{"100%", "%"}));
}

TEST(ReadCommand, LooksThroughEnv) {
  for (const char* exec :
       {"env view a", "/usr/bin/env LANG=C X= view a", "env -i -u HOME -C / -- A=b view a",
        "env --unset=HOME view a", "env A=b env C=d view a"}) {
    const auto command = ReadCommand(exec);
    ASSERT_TRUE(command) << exec;
    EXPECT_EQ(command->program, "view") << exec;
    EXPECT_EQ(command->arguments, Texts{"a"}) << exec;
  }
}

TEST(ReadCommand, LeavesOtherLaunchersAsTheyAre) {
  const auto command = ReadCommand("sh -c \"exec view\"");
  ASSERT_TRUE(command);
  EXPECT_EQ(command->program, "sh");
  EXPECT_EQ(command->arguments, (Texts{"-c", "exec view"}));
}

TEST(ReadCommand, IsNoneForBrokenLines) {
  for (const char* exec : {"", "  ", "\"", "view 'a", "%f view", "\"\" a", "env", "env A=b",
                           "env -u", "env -S \"view a\"", "# view"}) {
    EXPECT_FALSE(ReadCommand(exec)) << exec;
  }
}

TEST(EntryIdOf, TakesFoldersForPrefixes) {
  const Texts folders{"/home/a/applications", "/usr/share/applications"};
  EXPECT_EQ(EntryIdOf("/usr/share/applications/view.desktop", folders), "view");
  EXPECT_EQ(EntryIdOf("/usr/share/applications/kde/old/view.desktop", folders), "kde-old-view");
}

TEST(EntryIdOf, IsTheFileNameElsewhere) {
  const Texts folders{"/usr/share/applications"};
  EXPECT_EQ(EntryIdOf("/usr/share/applications2/kde/view.desktop", folders), "view");
  EXPECT_EQ(EntryIdOf("/etc/xdg/autostart/org.a.View.desktop", folders), "org.a.View");
  EXPECT_EQ(EntryIdOf("view", folders), "view");
  EXPECT_EQ(EntryIdOf(".desktop", folders), "");
  EXPECT_EQ(EntryIdOf("/", folders), "");
}

TEST(DesktopEntries, SaysWhatAnEntryHolds) {
  const fs::path program = UserEntries().parent_path() / "programs/run it";
  WriteFile(program, "#!/bin/sh\n");
  fs::permissions(program, fs::perms::owner_all);
  const fs::path link = program.parent_path() / "link";
  fs::remove(link);
  fs::create_symlink(program, link);
  WriteFile(UserEntries() / "org.test.Whole.desktop",
            EntryText("StartupWMClass=Whole\nExec=" + link.string() + " --new open %U\n"));
  DesktopEntries entries;
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "org.test.Whole"); }));
  const DesktopEntry* const entry = Find(entries, "org.test.Whole");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->startup_wm_class, "Whole");
  EXPECT_EQ(entry->program, fs::canonical(program).string());
  EXPECT_EQ(entry->program_name, "link");
  EXPECT_EQ(entry->arguments, (Texts{"--new", "open"}));
  EXPECT_TRUE(entry->is_shown);
}

TEST(DesktopEntries, CountsWhatMenusDoNotShowButNotWhatIsDeleted) {
  WriteFile(SystemEntries() / "quiet.desktop", EntryText("Exec=cat\nNoDisplay=true\n"));
  WriteFile(SystemEntries() / "deleted.desktop", EntryText("Exec=cat\n"));
  WriteFile(UserEntries() / "deleted.desktop", EntryText("Exec=cat\nHidden=true\n"));
  WriteFile(SystemEntries() / "missing.desktop", EntryText("Exec=no-such-program-here\n"));
  DesktopEntries entries;
  ASSERT_TRUE(Sees(&entries, [&] { return Find(entries, "quiet"); }));
  EXPECT_FALSE(Find(entries, "quiet")->is_shown);
  EXPECT_TRUE(Sees(&entries, [&] { return !Find(entries, "deleted"); }));
  EXPECT_FALSE(Find(entries, "missing"));
}

TEST(DesktopEntries, PrefersTheUsersEntry) {
  WriteFile(SystemEntries() / "both.desktop", EntryText("Exec=cat\nStartupWMClass=System\n"));
  WriteFile(UserEntries() / "both.desktop", EntryText("Exec=cat\nStartupWMClass=User\n"));
  DesktopEntries entries;
  EXPECT_TRUE(Sees(&entries, [&] {
    const DesktopEntry* const entry = Find(entries, "both");
    return entry && entry->startup_wm_class == "User";
  }));
}

TEST(DesktopEntries, GivesATerminalsProgramNoWindows) {
  WriteFile(UserEntries() / "inside.desktop", EntryText("Exec=cat\nTerminal=true\n"));
  DesktopEntries entries;
  ASSERT_TRUE(Sees(&entries, [&] { return Find(entries, "inside"); }));
  EXPECT_EQ(Find(entries, "inside")->program, "");
}

TEST(DesktopEntries, SurvivesBrokenFiles) {
  WriteFile(UserEntries() / "empty.desktop", "");
  WriteFile(UserEntries() / "noise.desktop", std::string(100000, '\xff'));
  WriteFile(UserEntries() / "quote.desktop", EntryText("Exec=cat \"\n"));
  WriteFile(UserEntries() / "long.desktop",
            EntryText("Exec=cat\nStartupWMClass=" + std::string(1 << 20, 'x') + "\n"));
  WriteFile(UserEntries() / "bytes-\xff\xfe.desktop",
            EntryText("Exec=cat\nStartupWMClass=\xff\xfe\n"));
  fs::create_directory(UserEntries() / "folder.desktop");
  fs::create_symlink(UserEntries(), UserEntries() / "loop");
  DesktopEntries entries;
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "bytes-\xff\xfe"); }));
  EXPECT_FALSE(Find(entries, "empty"));
  ASSERT_TRUE(Sees(&entries, [&] { return Find(entries, "long"); }));
  EXPECT_EQ(Find(entries, "long")->startup_wm_class.size(), size_t{1} << 20);
  fs::remove(UserEntries() / "loop");
}

TEST(DesktopEntries, AreReadOnceWhenNothingChanges) {
  DesktopEntries entries;
  EXPECT_TRUE(entries.Refresh());
  // What other tests of this process did may still be reported.
  EXPECT_TRUE(Eventually([&] { return !entries.Refresh(); }));
}

TEST(DesktopEntries, NoticesAnEntryThatIsAddedChangedAndRemoved) {
  const fs::path file = UserEntries() / "coming.desktop";
  DesktopEntries entries;
  entries.Refresh();
  ASSERT_FALSE(Find(entries, "coming"));
  WriteFile(file, EntryText("Exec=cat\nStartupWMClass=First\n"));
  EXPECT_TRUE(Sees(&entries, [&] {
    const DesktopEntry* const entry = Find(entries, "coming");
    return entry && entry->startup_wm_class == "First";
  }));
  WriteFile(file, EntryText("Exec=cat\nStartupWMClass=Other\n"));
  EXPECT_TRUE(Sees(&entries, [&] {
    const DesktopEntry* const entry = Find(entries, "coming");
    return entry && entry->startup_wm_class == "Other";
  }));
  fs::remove(file);
  EXPECT_TRUE(Sees(&entries, [&] { return !Find(entries, "coming"); }));
}

TEST(DesktopEntries, CountsNoEntryInAFolderInsideThatAnOuterOneDeletes) {
  DesktopEntries entries;
  WriteFile(SystemEntries() / "old/kept.desktop", EntryText("Exec=cat\n"));
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "old-kept"); }));
  WriteFile(UserEntries() / "old-gone.desktop", EntryText("Exec=cat\nHidden=true\n"));
  WriteFile(UserEntries() / "old/away.desktop", EntryText("Exec=cat\nHidden=true\n"));
  WriteFile(SystemEntries() / "old/gone.desktop", EntryText("Exec=cat\n"));
  WriteFile(SystemEntries() / "old/away.desktop", EntryText("Exec=cat\n"));
  WriteFile(SystemEntries() / "old/new.desktop", EntryText("Exec=cat\n"));
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "old-new"); }));
  EXPECT_FALSE(Find(entries, "old-gone"));
  EXPECT_FALSE(Find(entries, "old-away"));
}

TEST(DesktopEntries, NoticesChangesInFoldersInside) {
  const fs::path file = UserEntries() / "inner/deep/coming.desktop";
  DesktopEntries entries;
  entries.Refresh();
  WriteFile(file, EntryText("Exec=cat\nStartupWMClass=First\n"));
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "inner-deep-coming"); }));
  WriteFile(file, EntryText("Exec=cat\nStartupWMClass=Other\n"));
  EXPECT_TRUE(Sees(&entries, [&] {
    const DesktopEntry* const entry = Find(entries, "inner-deep-coming");
    return entry && entry->startup_wm_class == "Other";
  }));
  WriteFile(UserEntries() / "inner/second.desktop", EntryText("Exec=cat\n"));
  EXPECT_TRUE(Sees(&entries, [&] { return Find(entries, "inner-second"); }));
  fs::remove_all(UserEntries() / "inner");
  EXPECT_TRUE(Sees(&entries, [&] { return !Find(entries, "inner-deep-coming"); }));
}

}  // namespace
}  // namespace deskhand::platform
