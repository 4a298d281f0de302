// Folders of a test's own in place of the user's and the system's desktop entries.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

namespace deskhand {

/// GIO reads the environment once: these folders are set up before the first test, and serve all.
std::filesystem::path UserEntries();
std::filesystem::path SystemEntries();

/// Writes `text` to a new file or over an old one, in folders that are made as needed.
void WriteFile(const std::filesystem::path& file, const std::string& text);

/// A desktop entry; `lines` are added to those that every entry has.
std::string EntryText(const std::string& lines);

/// Waits for a condition, ten seconds at most. Says whether it came to be.
bool Eventually(const std::function<bool()>& condition);

}  // namespace deskhand
