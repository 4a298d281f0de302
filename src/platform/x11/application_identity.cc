#include "platform/x11/application_identity.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace deskhand::platform {
namespace {

/// As entries are named after programs: lower case, without spaces. Bytes beyond ASCII stay.
std::string Canonical(std::string name) {
  for (char& letter : name) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    if (letter == ' ') letter = '-';
  }
  return name;
}

bool IsOption(const std::string& argument) { return argument.starts_with('-'); }

bool Contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// How well a process fits to the command of an entry that runs its program.
struct Fit {
  size_t missing_options = 0;
  size_t shared_arguments = 0;
  bool is_started_by_name = false;

  bool IsBetterThan(const Fit& other) const {
    // Fewer options missing is better, more of the rest is.
    const auto rank = [](const Fit& fit) {
      return std::tuple(-static_cast<ptrdiff_t>(fit.missing_options), fit.shared_arguments,
                        fit.is_started_by_name);
    };
    return rank(*this) > rank(other);
  }
};

/// None when the process was not started with what the entry demands. Options are no demand: they
/// are often left out by who starts a program by hand.
std::optional<Fit> FitOf(const ProcessFacts& process, const DesktopEntry& entry) {
  Fit fit{.is_started_by_name = process.name == entry.program_name};
  for (const std::string& argument : entry.arguments) {
    if (Contains(process.arguments, argument)) {
      ++fit.shared_arguments;
    } else if (IsOption(argument)) {
      ++fit.missing_options;
    } else {
      return std::nullopt;
    }
  }
  return fit;
}

/// An interpreter is not the application that it runs, unless the entry names the script as well.
bool NamesScript(const ProcessFacts& process, const DesktopEntry& entry) {
  const auto script =
      std::find_if_not(process.arguments.begin(), process.arguments.end(), IsOption);
  return script != process.arguments.end() && Contains(entry.arguments, *script);
}

}  // namespace

EntryIndex::EntryIndex(std::vector<DesktopEntry> entries, std::vector<std::string> folders)
    : entries_(std::move(entries)), folders_(std::move(folders)) {
  std::sort(entries_.begin(), entries_.end(), [](const DesktopEntry& a, const DesktopEntry& b) {
    return std::tie(b.is_shown, a.id) < std::tie(a.is_shown, b.id);
  });
  for (size_t at = 0; at < entries_.size(); ++at) {
    const DesktopEntry& entry = entries_[at];
    by_id_.emplace(entry.id, at);
    if (!entry.startup_wm_class.empty()) by_startup_class_[entry.startup_wm_class].push_back(at);
    if (!entry.program.empty()) by_program_[entry.program].push_back(at);
  }
}

const DesktopEntry* EntryIndex::ByStartupClass(const std::string& name) const {
  const auto found = by_startup_class_.find(name);
  if (name.empty() || found == by_startup_class_.end()) return nullptr;
  const std::vector<size_t>& places = found->second;
  for (const std::string& id : {name, Canonical(name)}) {
    for (const size_t at : places) {
      if (entries_[at].id == id) return &entries_[at];
    }
  }
  return &entries_[places.front()];
}

const DesktopEntry* EntryIndex::ByName(const WindowFacts& window) const {
  if (const auto* as_is = WithId(window.wm_instance)) return as_is;
  if (const auto* as_is = WithId(window.wm_class)) return as_is;
  if (const auto* canonical = WithId(Canonical(window.wm_instance))) return canonical;
  return WithId(Canonical(window.wm_class));
}

const DesktopEntry* EntryIndex::ByProcess(const ProcessFacts& process) const {
  for (const std::string& program : {process.script, process.program}) {
    const auto found = by_program_.find(program);
    if (program.empty() || found == by_program_.end()) continue;
    const bool must_name_script = !process.script.empty() && program != process.script;
    const DesktopEntry* best = nullptr;
    Fit best_fit;
    for (const size_t at : found->second) {
      const DesktopEntry& entry = entries_[at];
      const auto fit = FitOf(process, entry);
      if (!fit || (must_name_script && !NamesScript(process, entry))) continue;
      if (best && !fit->IsBetterThan(best_fit)) continue;
      best = &entry;
      best_fit = *fit;
    }
    if (best) return best;
  }
  return nullptr;
}

std::optional<std::string> EntryIndex::EntryOf(const WindowFacts& window,
                                               const ProcessFacts* process) const {
  if (by_id_.contains(window.gtk_application_id)) return window.gtk_application_id;
  if (process && !process->launched_entry.empty()) {
    // Also when the file has gone since: a running program does not change its name.
    std::string id = EntryIdOf(process->launched_entry, folders_);
    if (!id.empty()) return id;
  }
  const DesktopEntry* entry = ByStartupClass(window.wm_instance);
  if (!entry) entry = ByStartupClass(window.wm_class);
  if (!entry) entry = ByName(window);
  if (!entry && process) entry = ByProcess(*process);
  return entry ? std::optional(entry->id) : std::nullopt;
}

const DesktopEntry* EntryIndex::WithId(const std::string& id) const {
  const auto found = by_id_.find(id);
  return found == by_id_.end() ? nullptr : &entries_[found->second];
}

bool ApplicationIdentities::Refresh() {
  is_fresh_ = true;
  if (!entries_.Refresh()) return false;
  index_ = EntryIndex(entries_.all(), EntryFolders());
  return true;
}

std::optional<std::string> ApplicationIdentities::BundleIdOf(const WindowFacts& window) {
  if (!is_fresh_) Refresh();
  auto id = index_.EntryOf(window, processes_.Find(window.process_id));
  if (!id && !window.wm_class.empty()) id = window.wm_class;
  return id;
}

}  // namespace deskhand::platform
