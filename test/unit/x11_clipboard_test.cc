// The clipboard from many threads at once, without Node: what the thread sanitizer looks at. Each
// test has an X server of its own, which every one of them meets anew.
#include <chrono>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/clipboard.h"
#include "platform/x11/clipboard_reader.h"
#include "platform/x11/task_thread.h"
#include "unit/entry_folders.h"
#include "unit/private_xvfb.h"

namespace deskhand {
namespace {

using platform::ClipboardText;
using platform::Clock;
using platform::ReadClipboard;
using std::chrono::seconds;

const std::string kLongText(3'000'000, 'x');

void Write(const std::string& text) {
  platform::ClearClipboard();
  platform::SetClipboardText(text);
}

/// As another program would, from the server.
std::optional<std::string> ReadFromServer() { return ReadClipboard(Clock::now() + seconds(10)); }

void RunOnThreads(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

TEST(X11Clipboard, GivesWhatWasWrittenToThisProcessAndToOthers) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  EXPECT_EQ(ClipboardText(), std::nullopt);
  for (const std::string& text : {std::string("text"), std::string(), kLongText}) {
    Write(text);
    EXPECT_TRUE(ClipboardText() == text);
    EXPECT_TRUE(ReadFromServer() == text);
  }
}

TEST(X11Clipboard, IsAlwaysOneOfTheTextsThatManyThreadsWrite) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  Write("thread 0");
  RunOnThreads(6, [](int number) {
    for (int round = 0; round < 30; ++round) {
      if (number < 3) {
        Write("thread " + std::to_string(number));
      } else {
        const auto text = number == 3 ? ClipboardText() : ReadFromServer();
        ASSERT_TRUE(text);
        EXPECT_EQ(text->substr(0, 7), "thread ");
      }
    }
  });
}

TEST(X11Clipboard, EndsWithItsServer) {
  for (int round = 0; round < 5; ++round) {
    PrivateXvfb server;
    ASSERT_TRUE(server.is_running());
    Write(kLongText);
    std::thread killer([&] { server.Kill(); });
    RunOnThreads(3, [](int number) {
      if (number == 0) Write("too late, perhaps");
      ClipboardText();
      ReadFromServer();
    });
    killer.join();
    EXPECT_TRUE(Eventually([] { return !ClipboardText(); }));
  }
}

TEST(X11Clipboard, OfAServerThatHangsIsNotWaitedForLong) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  Write("text");
  server.Stop();
  const auto start = Clock::now();
  EXPECT_EQ(ClipboardText(), "text");  // nobody needs to be asked
  RunOnThreads(3, [](int) { Write("lost"); });
  EXPECT_EQ(ClipboardText(), "text");
  EXPECT_LT(Clock::now() - start, seconds(5));
  server.Continue();
  EXPECT_EQ(ReadFromServer(), "text");
  Write("new text");
  EXPECT_EQ(ReadFromServer(), "new text");
}

// The first to be registered is the last to run, just before the leak check of a sanitizer, which
// would take for lost in a child what the threads of its parent hold.
const pid_t kParent = getpid();
[[maybe_unused]] const int kRegistered = std::atexit([] {
  if (getpid() != kParent) _exit(0);
});

/// How long a forked child takes to run what is to be run at the end of the process.
Clock::duration TimeOfEndOfChild() {
  const auto start = Clock::now();
  const pid_t child = fork();
  if (child == 0) std::exit(0);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  return Clock::now() - start;
}

TEST(X11Clipboard, IsNotTakenAwayByTheEndOfAForkedChild) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  EXPECT_EQ(ClipboardText(), std::nullopt);
  const auto without_text = TimeOfEndOfChild();
  Write("the parent's");
  EXPECT_LT(TimeOfEndOfChild(), without_text + std::chrono::milliseconds(700));
  EXPECT_EQ(ReadFromServer(), "the parent's");
}

}  // namespace
}  // namespace deskhand
