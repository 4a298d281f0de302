#include "platform/x11/spare_keys.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace deskhand::platform {
namespace {

bool Contains(const std::vector<xkb_keysym_t>& symbols, xkb_keysym_t symbol) {
  return std::find(symbols.begin(), symbols.end(), symbol) != symbols.end();
}

}  // namespace

void SpareKeys::Update(const std::vector<std::pair<uint8_t, KeySymbols>>& keys,
                       uint8_t level_count) {
  const std::vector<Slot> before = std::exchange(slots_, {});
  for (const auto& [keycode, symbols] : keys) {
    for (uint8_t level = 0; level < level_count; ++level) {
      const Place place{keycode, level};
      const auto same = std::find_if(before.begin(), before.end(),
                                     [&place](const Slot& slot) { return slot.place == place; });
      const Use last_use = same == before.end() ? 0 : same->last_use;
      slots_.push_back({place, symbols[level], last_use});
    }
  }
}

std::optional<SpareKeys::Place> SpareKeys::Find(xkb_keysym_t symbol) const {
  if (symbol == XKB_KEY_NoSymbol) return std::nullopt;
  for (const Slot& slot : slots_) {
    if (slot.symbol == symbol) return slot.place;
  }
  return std::nullopt;
}

void SpareKeys::SetUsed(const Place& place, Use use) {
  for (Slot& slot : slots_) {
    if (slot.place == place) slot.last_use = use;
  }
}

void SpareKeys::SetAllUsed(Use use) {
  for (Slot& slot : slots_) {
    if (slot.symbol != XKB_KEY_NoSymbol) slot.last_use = use;
  }
}

std::vector<xkb_keysym_t> SpareKeys::Missing(const std::vector<xkb_keysym_t>& wanted) const {
  std::vector<xkb_keysym_t> missing;
  for (const xkb_keysym_t symbol : wanted) {
    if (!Find(symbol)) missing.push_back(symbol);
  }
  return missing;
}

/// The places that none of `wanted` has, in the order of their lending.
std::vector<size_t> SpareKeys::Candidates(const std::vector<xkb_keysym_t>& wanted) const {
  std::vector<size_t> candidates;
  for (size_t i = 0; i < slots_.size(); ++i) {
    if (!Contains(wanted, slots_[i].symbol)) candidates.push_back(i);
  }
  std::stable_sort(candidates.begin(), candidates.end(), [this](size_t a, size_t b) {
    const auto rank = [](const Slot& slot) {
      return std::tuple{slot.last_use, slot.symbol != XKB_KEY_NoSymbol};
    };
    return rank(slots_[a]) < rank(slots_[b]);
  });
  return candidates;
}

std::optional<Use> SpareKeys::LastUseInTheWay(const std::vector<xkb_keysym_t>& wanted) const {
  const size_t count = Missing(wanted).size();
  if (count == 0) return 0;
  const std::vector<size_t> candidates = Candidates(wanted);
  if (candidates.size() < count) return std::nullopt;
  return slots_[candidates[count - 1]].last_use;
}

std::map<uint8_t, KeySymbols> SpareKeys::Lend(const std::vector<xkb_keysym_t>& wanted) {
  const std::vector<xkb_keysym_t> missing = Missing(wanted);
  const std::vector<size_t> candidates = Candidates(wanted);
  std::map<uint8_t, KeySymbols> changed;
  for (size_t i = 0; i < std::min(missing.size(), candidates.size()); ++i) {
    Slot& slot = slots_[candidates[i]];
    slot.symbol = missing[i];
    changed[slot.place.keycode] = {};
  }
  for (const Slot& slot : slots_) {
    const auto found = changed.find(slot.place.keycode);
    if (found != changed.end()) found->second[slot.place.level] = slot.symbol;
  }
  return changed;
}

std::map<uint8_t, KeySymbols> SpareKeys::Symbols() const {
  std::map<uint8_t, KeySymbols> symbols;
  for (const Slot& slot : slots_) {
    if (slot.symbol != XKB_KEY_NoSymbol) {
      symbols[slot.place.keycode][slot.place.level] = slot.symbol;
    }
  }
  return symbols;
}

}  // namespace deskhand::platform
