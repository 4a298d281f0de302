#include "platform/x11/window_owners.h"

#include <unordered_set>

namespace deskhand::platform {
namespace {

// So many unknown windows may be kept before it is worth looking for them.
constexpr size_t kSlack = 64;

}  // namespace

uint64_t WindowOwners::Refresh(const WindowTree& tree) {
  const uint64_t generation = ApplicationDirectory::Get().Refresh();
  if (generation != generation_) known_.clear();
  generation_ = generation;
  if (known_.size() <= tree.applications.size() + kSlack) return generation_;
  std::unordered_set<xcb_window_t> present;
  for (const ApplicationWindow& window : tree.applications) present.insert(window.id);
  std::erase_if(known_, [&](const auto& entry) { return !present.contains(entry.first); });
  return generation_;
}

const ApplicationDescription& WindowOwners::Of(const ApplicationWindow& window) {
  const auto found = known_.find(window.id);
  if (found != known_.end() && found->second.facts == window.facts) {
    return found->second.description;
  }
  auto description = ApplicationDirectory::Get().Describe(window.facts);
  return known_.insert_or_assign(window.id, Known{window.facts, std::move(description)})
      .first->second.description;
}

}  // namespace deskhand::platform
