// Keys that the keyboard has no use for, lent to characters that its layout lacks.
// A program looks a key up when it gets to the key's event, which may be long after: a place may
// be given to another character only when nobody has events left in which it was the former one.
// Pure; one thread.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace deskhand::platform {

/// Counts stretches of typing, from 1. All presses of a stretch count as one use.
using Use = uint64_t;
constexpr Use kEveryUse = std::numeric_limits<Use>::max();

/// What is on the levels of a key.
using KeySymbols = std::array<xkb_keysym_t, 4>;

class SpareKeys {
 public:
  struct Place {
    uint8_t keycode;
    uint8_t level;
    bool operator==(const Place&) const = default;
  };

  /// The spare keys as they are now; those that come first are lent first. The first `level_count`
  /// levels of each are used. When a place was used last is remembered, whatever became of it.
  void Update(const std::vector<std::pair<uint8_t, KeySymbols>>& keys, uint8_t level_count);

  size_t capacity() const { return slots_.size(); }

  /// Where `symbol` is; none when nowhere.
  std::optional<Place> Find(xkb_keysym_t symbol) const;

  /// It was pressed, or may have been.
  void SetUsed(const Place& place, Use use);
  /// The same for all that have a symbol.
  void SetAllUsed(Use use);

  /// The uses up to this one must be over before all of `wanted` have places; 0 when none need be.
  /// None when there are too few places. `wanted` has no symbol twice.
  std::optional<Use> LastUseInTheWay(const std::vector<xkb_keysym_t>& wanted) const;

  /// Gives each of `wanted` a place, those longest unused first. To be called when they are free.
  /// Returns what is on the keys that changed.
  std::map<uint8_t, KeySymbols> Lend(const std::vector<xkb_keysym_t>& wanted);

  /// What is on all of them, without those that are empty.
  std::map<uint8_t, KeySymbols> Symbols() const;

 private:
  struct Slot {
    Place place;
    xkb_keysym_t symbol;
    Use last_use;
  };

  std::vector<xkb_keysym_t> Missing(const std::vector<xkb_keysym_t>& wanted) const;
  std::vector<size_t> Candidates(const std::vector<xkb_keysym_t>& wanted) const;

  std::vector<Slot> slots_;
};

}  // namespace deskhand::platform
