#include "platform/x11/exclusion_plan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

namespace deskhand::platform {
namespace {

class Planner {
 public:
  Planner(const WindowTree& tree, const std::vector<std::string>& bundle_ids,
          const BundleIdOf& bundle_id_of)
      : tree_(tree),
        names_(bundle_ids.begin(), bundle_ids.end()),
        bundle_id_of_(bundle_id_of),
        exclusions_(tree.tops.size()),
        progress_(tree.tops.size()) {
    is_named_.reserve(tree.applications.size());
    is_known_.reserve(tree.applications.size());
    for (const ApplicationWindow& window : tree.applications) {
      const auto bundle_id = bundle_id_of(window.facts);
      is_known_.push_back(window.has_name() && bundle_id);
      is_named_.push_back(bundle_id && names_.contains(*bundle_id));
    }
  }

  std::vector<Exclusion> Plan() {
    for (size_t index = 0; index < tree_.applications.size(); ++index) {
      const ApplicationWindow& window = tree_.applications[index];
      top_of_[window.id] = window.top;
      if (is_named_[index]) {
        clients_.insert(window.client);
        if (window.facts.process_id != 0) processes_.insert(window.facts.process_id);
      }
    }
    for (const FormerName& former : tree_.former_names) {
      const auto bundle_id = bundle_id_of_(former.facts);
      if (!bundle_id || !names_.contains(*bundle_id)) continue;
      clients_.insert(former.client);
      if (former.facts.process_id != 0) processes_.insert(former.facts.process_id);
    }
    FindOwners();
    for (size_t top = 0; top < tree_.tops.size(); ++top) Decide(top);
    LeaveOutParts();
    return std::move(exclusions_);
  }

 private:
  enum class Progress : uint8_t { kOpen, kUnderWay, kDecided };

  static constexpr size_t kNone = SIZE_MAX;

  /// Which application window stands for each top-level window.
  void FindOwners() {
    owners_.assign(tree_.tops.size(), kNone);
    for (size_t index = 0; index < tree_.applications.size(); ++index) {
      const ApplicationWindow& window = tree_.applications[index];
      size_t& owner = owners_[window.top];
      // The top-level window itself comes first. A client in its frame outranks it; where a frame
      // holds several, one that is to be left out does.
      if (owner == kNone || Outranks(index, owner)) owner = index;
    }
  }

  bool Outranks(size_t challenger, size_t owner) const {
    const auto rank = [this](size_t index) {
      const ApplicationWindow& window = tree_.applications[index];
      const bool is_top = window.id == tree_.tops[window.top].id;
      if (!is_top && window.is_managed) return is_named_[index] ? 4 : 3;
      // A frame without a name whose content nobody calls managed.
      if (is_top) return is_known_[index] ? 2 : 0;
      return is_known_[index] ? 1 : 0;
    };
    return rank(challenger) > rank(owner);
  }

  void Decide(size_t top) {
    if (progress_[top] != Progress::kOpen) return;
    progress_[top] = Progress::kUnderWay;
    exclusions_[top].is_whole = owners_[top] != kNone && IsLeftOut(owners_[top]);
    progress_[top] = Progress::kDecided;
  }

  bool IsLeftOut(size_t owner) {
    if (is_named_[owner] || is_known_[owner]) return is_named_[owner];
    const ApplicationWindow& window = tree_.applications[owner];
    const auto leader = top_of_.find(window.transient_for);
    if (leader != top_of_.end()) {
      Decide(leader->second);
      // Windows may be transient in a circle; then none of them leads.
      if (progress_[leader->second] == Progress::kDecided) {
        return exclusions_[leader->second].is_whole;
      }
    }
    return clients_.contains(window.client) || processes_.contains(window.facts.process_id);
  }

  void LeaveOutParts() {
    for (size_t index = 0; index < tree_.applications.size(); ++index) {
      const ApplicationWindow& window = tree_.applications[index];
      Exclusion& exclusion = exclusions_[window.top];
      const bool is_inside = window.id != tree_.tops[window.top].id;
      if (is_named_[index] && is_inside && window.is_viewable && !exclusion.is_whole) {
        exclusion.parts.push_back(window.bounds);
      }
    }
  }

  const WindowTree& tree_;
  const std::unordered_set<std::string> names_;
  const BundleIdOf& bundle_id_of_;
  std::vector<Exclusion> exclusions_;  // for each top-level window, as the next two
  std::vector<Progress> progress_;
  std::vector<size_t> owners_;
  std::vector<bool> is_named_;  // for each application window: it is to be left out
  std::vector<bool> is_known_;  // its own name says which application it is of
  std::unordered_map<xcb_window_t, size_t> top_of_;
  std::unordered_set<uint32_t> clients_;  // those of windows that are to be left out
  std::unordered_set<uint32_t> processes_;
};

}  // namespace

std::vector<Exclusion> PlanExclusions(const WindowTree& tree,
                                      const std::vector<std::string>& bundle_ids,
                                      const BundleIdOf& bundle_id_of) {
  return Planner(tree, bundle_ids, bundle_id_of).Plan();
}

bool HasShown(const WindowTree& tree, const std::vector<Exclusion>& exclusions) {
  for (size_t top = 0; top < tree.tops.size(); ++top) {
    if (tree.tops[top].is_shown && exclusions[top].any()) return true;
  }
  return false;
}

}  // namespace deskhand::platform
