#include "platform/x11/launching.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "unit/entry_folders.h"

namespace deskhand::platform {
namespace {

namespace fs = std::filesystem;

void DoNotAnnounce(const StartupSequence&) { FAIL() << "the entry does not ask for it"; }

std::string TextOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// An entry whose program writes to a file what a shell finds out, and what it wrote.
class Report {
 public:
  explicit Report(const std::string& commands, const std::string& lines = "") {
    fs::remove(report_);
    // Under its name only when it is complete.
    const std::string part = report_.string() + ".part";
    WriteFile(script_, "#!/bin/sh\n(" + commands + ") > " + part + " 2>&1; mv " + part + " " +
                           report_.string() + "\n");
    fs::permissions(script_, fs::perms::owner_all);
    WriteFile(entry_, EntryText("Exec=" + script_.string() + "\n" + lines));
  }

  std::string entry() const { return entry_.string(); }

  std::string Await() const {
    EXPECT_TRUE(Eventually([this] { return fs::exists(report_); }));
    return TextOf(report_);
  }

 private:
  const fs::path script_ = UserEntries() / "reporter.sh";
  const fs::path report_ = UserEntries() / "report.txt";
  const fs::path entry_ = UserEntries() / "reporter.desktop";
};

TEST(LaunchEntry, PassesNoDescriptorOn) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);  // programs inherit these, unless somebody sees to it
  const Report report("ls -l /proc/$$/fd");
  ASSERT_EQ(LaunchEntry(report.entry(), ":1", 0, DoNotAnnounce).error, std::nullopt);
  const std::string files = report.Await();
  EXPECT_EQ(files.find("pipe:"), std::string::npos) << files;
  EXPECT_NE(files.find(" 0 -> /dev/null"), std::string::npos) << files;
  for (const int end : ends) close(end);
}

TEST(LaunchEntry, SetsTheDisplay) {
  const Report report("echo \"display $DISPLAY\"");
  ASSERT_EQ(LaunchEntry(report.entry(), ":77.1", 0, DoNotAnnounce).error, std::nullopt);
  EXPECT_EQ(report.Await(), "display :77.1\n");
}

TEST(LaunchEntry, TellsTheProcessThatLeadsItsSession) {
  const Report report("cut -d ' ' -f 1,6 /proc/$$/stat");
  const LaunchResult result = LaunchEntry(report.entry(), ":1", 0, DoNotAnnounce);
  ASSERT_EQ(result.error, std::nullopt);
  const std::string id = std::to_string(result.process_id);
  EXPECT_EQ(report.Await(), id + " " + id + "\n");
}

TEST(LaunchEntry, AnnouncesWhatTheProgramFindsAsItsStartup) {
  const Report report("echo \"$DESKTOP_STARTUP_ID\"", "StartupNotify=true\n");
  std::string announced;
  const auto announce = [&](const StartupSequence& sequence) { announced = sequence.id; };
  ASSERT_EQ(LaunchEntry(report.entry(), ":1", 4711, announce).error, std::nullopt);
  EXPECT_EQ(report.Await(), announced + "\n");
  EXPECT_TRUE(announced.ends_with("_TIME4711")) << announced;
}

TEST(LaunchEntry, DoesNotPassOnWhatThisProcessIgnores) {
  const auto before = std::signal(SIGHUP, SIG_IGN);
  const Report report("grep SigIgn /proc/$$/status");
  ASSERT_EQ(LaunchEntry(report.entry(), ":1", 0, DoNotAnnounce).error, std::nullopt);
  EXPECT_EQ(report.Await(), "SigIgn:\t0000000000000000\n");
  std::signal(SIGHUP, before);
}

TEST(LaunchEntry, SaysWhyItCannot) {
  const LaunchResult missing = LaunchEntry("/nowhere/entry.desktop", ":1", 0, DoNotAnnounce);
  EXPECT_EQ(missing.error, "/nowhere/entry.desktop names no program that is installed");
  const Report report("true", "Path=/nowhere/at-all\n");
  const LaunchResult unusable = LaunchEntry(report.entry(), ":1", 0, DoNotAnnounce);
  ASSERT_NE(unusable.error, std::nullopt);
  EXPECT_NE(unusable.error->find("/nowhere/at-all"), std::string::npos) << *unusable.error;
}

}  // namespace
}  // namespace deskhand::platform
