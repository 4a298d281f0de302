#include "platform/x11/processes.h"

#include <filesystem>
#include <fstream>
#include <latch>
#include <sstream>
#include <thread>

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "unit/child_process.h"
#include "unit/entry_folders.h"

namespace deskhand::platform {
namespace {

namespace fs = std::filesystem;
using std::literals::operator""s;
using Texts = std::vector<std::string>;

fs::path TestFile(const std::string& name) { return UserEntries().parent_path() / name; }

std::string Program(const std::string& path) { return fs::canonical(path).string(); }

/// /proc/PID/stat of a process with these values in the fields that tell processes apart.
std::string Stat(const std::string& name, int start_time, int arguments_start) {
  std::ostringstream text;
  text << "7 (" << name << ") S";
  for (int field = 4; field <= 52; ++field) {
    text << ' ' << (field == 22 ? start_time : field == 48 ? arguments_start : field);
  }
  return text.str() + "\n";
}

TEST(ProcessStamp, TellsStartAndProgramApart) {
  const auto stamp = ReadStamp(Stat("cat", 500, 900));
  ASSERT_TRUE(stamp);
  EXPECT_EQ(stamp, ReadStamp(Stat("cat", 500, 900)));
  EXPECT_NE(stamp, ReadStamp(Stat("cat", 501, 900)));
  EXPECT_NE(stamp, ReadStamp(Stat("cat", 500, 901)));
}

TEST(ProcessStamp, IsReadBehindAnyName) {
  const auto stamp = ReadStamp(Stat("cat", 500, 900));
  EXPECT_EQ(stamp, ReadStamp(Stat("a) S 1 (b", 500, 900)));
  EXPECT_EQ(stamp, ReadStamp(Stat("\xff\xfe )", 500, 900)));
}

TEST(ProcessStamp, IsNoneForOtherText) {
  for (const char* text : {"", ")", "7 (cat) ", "7 (cat) S 1 2 3", "7 cat S 1 2 3"}) {
    EXPECT_FALSE(ReadStamp(text)) << text;
  }
  std::string letters = Stat("cat", 500, 900);
  letters.replace(letters.find(" 500 "), 5, " x00 ");
  EXPECT_FALSE(ReadStamp(letters));
}

TEST(LaunchedEntry, CountsForTheProcessThatItNames) {
  const std::string environment =
      "HOME=/\0GIO_LAUNCHED_DESKTOP_FILE=/a/b.desktop\0GIO_LAUNCHED_DESKTOP_FILE_PID=12\0"s;
  EXPECT_EQ(LaunchedEntry(environment, 12), "/a/b.desktop");
  EXPECT_EQ(LaunchedEntry(environment, 13), "");
  EXPECT_EQ(LaunchedEntry(environment, 1), "");
}

TEST(LaunchedEntry, IsNoneWithoutBothVariables) {
  EXPECT_EQ(LaunchedEntry("", 12), "");
  EXPECT_EQ(LaunchedEntry("GIO_LAUNCHED_DESKTOP_FILE=/a/b.desktop\0"s, 12), "");
  EXPECT_EQ(LaunchedEntry("GIO_LAUNCHED_DESKTOP_FILE_PID=12\0"s, 12), "");
  EXPECT_EQ(LaunchedEntry("X=GIO_LAUNCHED_DESKTOP_FILE=/a\0GIO_LAUNCHED_DESKTOP_FILE_PID=12"s, 12),
            "");
}

TEST(LaunchedEntry, IsNoneWhenLongerThanAPath) {
  EXPECT_EQ(LaunchedEntry("GIO_LAUNCHED_DESKTOP_FILE_PID=12\0GIO_LAUNCHED_DESKTOP_FILE=/"s +
                              std::string(1 << 20, 'a'),
                          12),
            "");
}

TEST(InterpreterOf, ReadsTheFirstLine) {
  EXPECT_EQ(InterpreterOf("#!/usr/bin/python3\nimport os\n"), "python3");
  EXPECT_EQ(InterpreterOf("#! /usr/bin/gjs -m\n"), "gjs");
  EXPECT_EQ(InterpreterOf("#!/bin/sh"), "sh");
}

TEST(InterpreterOf, LooksThroughEnv) {
  EXPECT_EQ(InterpreterOf("#!/usr/bin/env python3\n"), "python3");
  EXPECT_EQ(InterpreterOf("#!/usr/bin/env -S LANG=C python3 -u\n"), "python3");
}

TEST(InterpreterOf, IsEmptyForWhatIsNoScript) {
  for (const char* text : {"", "#", "# !/bin/sh\n",
                           "\x7f"
                           "ELF",
                           "#!\n/bin/sh", "#!"}) {
    EXPECT_EQ(InterpreterOf(text), "") << text;
  }
}

TEST(Processes, KnowsProgramNameAndArguments) {
  const ChildProcess child({"cat", "-u", "-",
                            "\xff"
                            "end"});
  Processes processes;
  const ProcessFacts* facts = processes.Find(child.id());
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->program, Program("/bin/cat"));
  EXPECT_EQ(facts->name, "cat");
  EXPECT_EQ(facts->arguments, (Texts{"-u", "-",
                                     "\xff"
                                     "end"}));
  EXPECT_EQ(facts->script, "");
  EXPECT_EQ(facts->launched_entry, "");
  EXPECT_EQ(processes.Find(child.id()), facts);  // kept
}

TEST(Processes, NoticesAnotherProgramInTheSameProcess) {
  const ChildProcess child({"sh", "-c", "read line; exec cat"});
  Processes processes;
  ASSERT_TRUE(processes.Find(child.id()));
  EXPECT_EQ(processes.Find(child.id())->program, Program("/bin/sh"));
  child.SayLine();
  EXPECT_TRUE(Eventually([&] {
    const ProcessFacts* facts = processes.Find(child.id());
    return facts && facts->program == Program("/bin/cat") && facts->arguments.empty();
  }));
}

TEST(Processes, NoticesTheSameProgramRunAgain) {
  const ChildProcess child({"sh", "-c", "read line; exec sh -c 'read line; :' again"});
  Processes processes;
  ASSERT_TRUE(processes.Find(child.id()));
  child.SayLine();
  EXPECT_TRUE(Eventually([&] {
    const ProcessFacts* facts = processes.Find(child.id());
    return facts && facts->arguments == Texts{"-c", "read line; :", "again"};
  }));
}

TEST(Processes, KnowsNothingOfAProcessThatEnded) {
  ChildProcess child({"cat"});
  const uint32_t id = child.id();
  Processes processes;
  ASSERT_TRUE(processes.Find(id));
  child.Kill();
  EXPECT_FALSE(processes.Find(id));
  child.Reap();
  EXPECT_FALSE(processes.Find(id));
  EXPECT_EQ(processes.kept(), 0u);
}

TEST(Processes, KnowsNothingOfWhatIsNoProcess) {
  Processes processes;
  EXPECT_FALSE(processes.Find(0));
  EXPECT_FALSE(processes.Find(UINT32_MAX));
}

TEST(Processes, KnowsTheScriptOfAnInterpreter) {
  const fs::path script = TestFile("script with spaces");
  WriteFile(script, "#!/bin/sh\nread line\n:\n");
  fs::permissions(script, fs::perms::owner_all);
  const ChildProcess by_kernel({script.string()});
  const ChildProcess by_hand({"sh", "-e", script.string()});
  Processes processes;
  EXPECT_EQ(processes.Find(by_kernel.id())->script, script.string());
  EXPECT_EQ(processes.Find(by_hand.id())->script, script.string());
}

TEST(Processes, FindsAScriptFromTheFolderOfItsProcess) {
  const fs::path script = TestFile("relative/script");
  WriteFile(script, "#!/usr/bin/env sh\nread line\n:\n");
  const ChildProcess child(
      {"sh", "-c", "cd '" + script.parent_path().string() + "'; exec sh ./script"});
  Processes processes;
  EXPECT_TRUE(Eventually([&] {
    const ProcessFacts* facts = processes.Find(child.id());
    return facts && facts->script == script.string();
  }));
}

TEST(Processes, TakesAnOpenFileForNoScript) {
  const fs::path script = TestFile("opened");
  WriteFile(script, "#!/bin/sh\n");
  const ChildProcess viewer({"tail", "-f", script.string()});
  const ChildProcess folder({"tail", "-f", "/dev/null"});
  Processes processes;
  EXPECT_EQ(processes.Find(viewer.id())->script, "");
  EXPECT_EQ(processes.Find(folder.id())->script, "");
}

TEST(Processes, KnowsAProgramThatWasReplaced) {
  const fs::path program = TestFile("replaced");
  fs::copy_file(Program("/bin/cat"), program);
  const ChildProcess child({program.string()});
  fs::remove(program);
  Processes processes;
  ASSERT_TRUE(processes.Find(child.id()));
  EXPECT_EQ(processes.Find(child.id())->program, program.string());
}

TEST(Processes, KnowsTheEntryThatGioLaunched) {
  const fs::path file = TestFile("elsewhere.desktop");
  WriteFile(file, EntryText("Exec=tail --pid=" + std::to_string(getpid()) + " -f /dev/null\n"));
  GDesktopAppInfo* const info = g_desktop_app_info_new_from_filename(file.c_str());
  ASSERT_TRUE(info);
  GPid pid = 0;
  const auto keep_pid = [](GDesktopAppInfo*, GPid started, gpointer target) {
    *static_cast<GPid*>(target) = started;
  };
  ASSERT_TRUE(g_desktop_app_info_launch_uris_as_manager(info, nullptr, nullptr,
                                                        G_SPAWN_DO_NOT_REAP_CHILD, nullptr, nullptr,
                                                        +keep_pid, &pid, nullptr));
  Processes processes;
  EXPECT_TRUE(Eventually([&] {
    const ProcessFacts* facts = processes.Find(static_cast<uint32_t>(pid));
    return facts && facts->name == "tail" && facts->launched_entry == file.string();
  }));
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  g_object_unref(info);
}

TEST(Processes, DoesNotTakeAChildForTheProcessThatWasLaunched) {
  const ChildProcess child({"cat"}, {"GIO_LAUNCHED_DESKTOP_FILE=/a/b.desktop",
                                     "GIO_LAUNCHED_DESKTOP_FILE_PID=" + std::to_string(getpid())});
  Processes processes;
  ASSERT_TRUE(processes.Find(child.id()));
  EXPECT_EQ(processes.Find(child.id())->launched_entry, "");
}

TEST(Processes, KeepsNoMoreThanItMay) {
  constexpr size_t kThreads = Processes::kMostKept + 3;
  std::latch started(kThreads), finished(1);
  std::vector<uint32_t> ids(kThreads);  // a thread is found by its number too
  std::vector<std::thread> threads;
  for (uint32_t& id : ids) {
    threads.emplace_back([&] {
      id = static_cast<uint32_t>(gettid());
      started.count_down();
      finished.wait();
    });
  }
  started.wait();
  Processes processes;
  for (const uint32_t id : ids) EXPECT_TRUE(processes.Find(id));
  EXPECT_EQ(processes.kept(), Processes::kMostKept);
  finished.count_down();
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace deskhand::platform
