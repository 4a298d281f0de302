#include "unit/entry_folders.h"

#include <cstdlib>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <stdlib.h>

namespace deskhand {
namespace {

class EntryFolders : public testing::Environment {
 public:
  static std::filesystem::path& root() {
    static std::filesystem::path root;
    return root;
  }

  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "deskhand-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    root() = name;
    std::filesystem::create_directories(UserEntries());
    std::filesystem::create_directories(SystemEntries());
    setenv("XDG_DATA_HOME", (root() / "user").c_str(), 1);
    setenv("XDG_DATA_DIRS", (root() / "system").c_str(), 1);
  }

  void TearDown() override { std::filesystem::remove_all(root()); }
};

const auto* const kFolders = testing::AddGlobalTestEnvironment(new EntryFolders);

}  // namespace

std::filesystem::path UserEntries() { return EntryFolders::root() / "user/applications"; }

std::filesystem::path SystemEntries() { return EntryFolders::root() / "system/applications"; }

void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

std::string EntryText(const std::string& lines) {
  return "[Desktop Entry]\nType=Application\nName=Test\n" + lines;
}

bool Eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::yield();
  }
  return true;
}

}  // namespace deskhand
